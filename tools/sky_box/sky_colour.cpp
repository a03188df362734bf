#include "sky_colour.h"

#include <algorithm>
#include <cmath>

namespace {

struct Rgb {
  double r, g, b;
};

const Rgb a_zenith{0.30, 0.52, 0.82};
const Rgb a_skyHorizon{0.83, 0.89, 0.95};
const Rgb a_groundHorizon{0.70, 0.71, 0.68};
const Rgb a_ground{0.47, 0.47, 0.42};
const Rgb a_groundBelow{0.37, 0.37, 0.33};

Rgb mix(const Rgb& a, const Rgb& b, double t) {
  t = std::clamp(t, 0.0, 1.0);
  return {a.r + (b.r - a.r) * t, a.g + (b.g - a.g) * t, a.b + (b.b - a.b) * t};
}

}  // namespace

QColor skyColour(double elevation) {
  const double height = std::sin(elevation);
  Rgb colour;
  if (height >= 0.0) {
    // The blue deepens quickly above the horizon, then slowly toward the zenith.
    colour = mix(a_skyHorizon, a_zenith, std::pow(height, 0.55));
  } else {
    // A thin haze band just below the horizon, then the ground darkening underfoot.
    const double depth = -height;
    colour = mix(mix(a_groundHorizon, a_ground, depth * 8.0), a_groundBelow, depth);
  }
  return QColor::fromRgbF(colour.r, colour.g, colour.b);
}

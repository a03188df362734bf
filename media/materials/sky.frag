#version 120
// The sky's gradient by elevation, computed per pixel instead of fetched from
// the cube map: the same formula as tools/sky_box/sky_colour.cpp, which
// generates the faces of the texture technique. The box is authored Y-up.
varying vec3 direction;

const vec3 a_zenith = vec3(0.30, 0.52, 0.82);
const vec3 a_skyHorizon = vec3(0.83, 0.89, 0.95);
const vec3 a_groundHorizon = vec3(0.70, 0.71, 0.68);
const vec3 a_ground = vec3(0.47, 0.47, 0.42);
const vec3 a_groundBelow = vec3(0.37, 0.37, 0.33);

void main() {
  float height = direction.y * inversesqrt(dot(direction, direction));
  vec3 colour;
  if (height >= 0.0) {
    colour = mix(a_skyHorizon, a_zenith, pow(max(height, 1e-6), 0.55));
  } else {
    float depth = -height;
    colour = mix(mix(a_groundHorizon, a_ground, min(depth * 8.0, 1.0)), a_groundBelow, depth);
  }
  gl_FragColor = vec4(colour, 1.0);
}

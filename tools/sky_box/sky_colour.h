#pragma once

#include <QColor>

// The colour of the sky box in a direction, as a function of its elevation
// only: a calm blue gradient above the horizon, a pale haze at the horizon,
// a muted ground colour below. Depending on the elevation alone makes the
// faces independent of how OGRE orients each of them within its plane.
QColor skyColour(double elevationRadians);

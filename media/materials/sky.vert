#version 120
// The sky box of the 3D view: passes the view direction of each corner of
// the box (its 3D texture coordinate, as setSkyBox gives it for a cube map)
// on to the fragment program, which colours it by elevation.
varying vec3 direction;

void main() {
  direction = gl_MultiTexCoord0.xyz;
  gl_Position = ftransform();
}

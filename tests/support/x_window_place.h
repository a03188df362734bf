#pragma once
// Where an X window sits: its parent window and its geometry within it.
// Include it last: Xlib's macros clash with Qt and OGRE names.

#include <QRect>
#include <QX11Info>

#include <X11/Xlib.h>
#undef KeyPress
#undef KeyRelease
#undef FocusIn
#undef FocusOut
#undef Status
#undef None
#undef Bool

namespace testing_support {

struct XWindowPlace {
  unsigned long parent = 0;
  QRect geometry;
};

inline XWindowPlace xWindowPlace(unsigned long window) {
  XWindowPlace place;
  Display* display = QX11Info::display();
  XSync(display, False);
  Window root = 0;
  Window parent = 0;
  Window* children = nullptr;
  unsigned int count = 0;
  if (XQueryTree(display, window, &root, &parent, &children, &count)) {
    place.parent = parent;
    if (children) XFree(children);
  }
  int x = 0;
  int y = 0;
  unsigned int width = 0;
  unsigned int height = 0;
  unsigned int border = 0;
  unsigned int depth = 0;
  if (XGetGeometry(display, window, &root, &x, &y, &width, &height, &border, &depth)) {
    place.geometry = QRect(x, y, static_cast<int>(width), static_cast<int>(height));
  }
  return place;
}

}  // namespace testing_support

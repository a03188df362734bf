#pragma once
// Read access to the 3D view's private state, for the benchmarks only (the
// widget names this class its friend). One definition per program.

#include <QMap>
#include <QString>

#include <boost/shared_ptr.hpp>

#include "render_widget.h"

namespace VX::NextGenView {

class RenderWidgetTestAccess {
 public:
  static int state(const RenderWidget& w) { return w.m_state; }
  static boost::shared_ptr<Selection> selection(const RenderWidget& w) { return w.m_selection; }
  static int pendingCommands(const RenderWidget& w) { return w.m_motorCommands.size(); }
};

}  // namespace VX::NextGenView

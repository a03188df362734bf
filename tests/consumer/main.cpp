// Uses the installed headers and libraries the way a host application does.
#include <ku/log.h>
#include <ku/path.h>
#include <mk/math/transform.h>
#include <renderwidget/render_widget_interface.h>

#include <cmath>
#include <iostream>

int main() {
  const MK::Math::Quaternion q = MK::Math::quaternionFromTransform(MK::Math::Transform::fromRotX(1.5707964f));
  const bool mathWorks = std::fabs(q.x - 0.70710677f) < 1e-6f;
  const bool interfaceHasMetaObject =
      VX::NextGenView::RenderWidgetInterface::staticMetaObject.indexOfSignal("renderWindowReady()") >= 0;
  ku::log::LogStream(ku::log::Info, "main", "consumer", "", 0) << "consumer linked" << std::endl;
  std::cout << "math " << mathWorks << " meta " << interfaceHasMetaObject << std::endl;
  return mathWorks && interfaceHasMetaObject ? 0 : 1;
}

#include "render_widget_interface.h"

namespace VX::NextGenView {

RenderWidgetInterface::~RenderWidgetInterface() = default;

void RenderWidgetInterface::markInitialized() {
  const bool wasInitialized = m_initialized;
  m_initialized = true;
  if (!wasInitialized) emit renderWindowReady();
}

}  // namespace VX::NextGenView

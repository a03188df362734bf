#include "view_screenshot.h"

#include <exception>

#include <QFileInfo>
#include <QPixmap>

#include <world_view_container.h>

#include "render_widget.h"

using VX::NextGenView::RenderWidget;

bool ViewScreenshot::save(VX::WorldViewContainer* container, const QString& fileName, bool backgroundHidden,
                          QString* error) {
  QWidget* view = container ? container->view() : nullptr;
  if (!view) {
    *error = "There is no view to take a screenshot of.";
    return false;
  }
  if (auto* view3D = dynamic_cast<RenderWidget*>(view)) {
    if (!view3D->renderWindow()) {
      *error = "The 3D view is not ready yet.";
      return false;
    }
    try {
      container->saveScreenshot(fileName, backgroundHidden);
    } catch (const std::exception& exception) {  // Ogre::Exception among others
      *error = QString("Cannot save the screenshot %1: %2").arg(fileName, QString::fromLocal8Bit(exception.what()));
      return false;
    }
  } else if (!view->grab().save(fileName)) {
    *error = QString("Cannot save the screenshot %1: unknown picture format or a folder that cannot be written.")
                 .arg(fileName);
    return false;
  }
  const QFileInfo written(fileName);
  if (!written.exists() || written.size() == 0) {
    // OGRE's picture codecs may fail on an unwritable folder without throwing.
    *error =
        QString("Cannot save the screenshot %1: nothing was written (can that folder be written to?)").arg(fileName);
    return false;
  }
  return true;
}

// minimal_host: the smallest complete host of the world view container.
// It shows a robot in the 3D view, or in the 2D picture view when the 3D
// engine cannot start, saves a screenshot once the view is ready, and exits.
//
//   minimal_host [robot.urdf [screenshot.png]]
//
// Default: the robot bundled with the library, and minimal_host.png.
#include <exception>
#include <iostream>

#include <QApplication>
#include <QFile>
#include <QFileInfo>
#include <QMainWindow>
#include <QTimer>

#include <boost/make_shared.hpp>

#include <ku/path.h>
#include <renderwidget/render_widget_interface.h>
#include <renderwidget/world_view_container.h>
#include <world_model/bundled_robot.h>
#include <world_model/robot.h>
#include <world_model/world.h>

using VX::WorldViewContainer;
using VX::NextGenView::RenderWidgetInterface;

int main(int argc, char** argv) {
  QApplication app(argc, argv);
  // The container keeps its "ogreInitSucceeded" marker in these settings.
  QApplication::setOrganizationName("RenderWidget");
  QApplication::setApplicationName("minimal_host");
  const QStringList args = QApplication::arguments();
  const std::string urdf = args.size() > 1 ? args[1].toStdString() : VX::NextGenView::bundledRobotFile("zel");
  const QString screenshot = args.size() > 2 ? args[2] : QString("minimal_host.png");

  // The world the container shows: one robot.
  const VX::NextGenView::RobotLoadResult loaded = VX::NextGenView::Robot::loadFromUrdfFile(urdf);
  if (!loaded.robot) {
    std::cerr << "minimal_host: cannot load " << urdf << ": " << loaded.error << std::endl;
    return 2;
  }
  auto world = boost::make_shared<VX::NextGenView::World>();
  world->addRobot(loaded.robot);

  // The 3D view when the engine starts. When it does not (the reason is
  // logged), the container stays empty: view() is null, and the host falls
  // back to the 2D picture view.
  QMainWindow window;
  const QString dataPath = QString::fromStdString(ku::path::dataFolder());
  auto* container = new WorldViewContainer(nullptr, dataPath, &window, world, /*use3DView=*/true);
  const bool shows3D = container->view() != nullptr;
  if (!shows3D) {
    delete container;
    container = new WorldViewContainer(nullptr, dataPath, &window, world, /*use3DView=*/false);
  }
  window.setCentralWidget(container);
  window.resize(800, 600);

  // The view announces renderWindowReady once it can draw; the container then
  // refreshes the 3D view every 25 ms. Let it draw for a moment, then save.
  QObject::connect(container->view(), &RenderWidgetInterface::renderWindowReady, [&] {
    container->onRobotReady();  // the first frame; the 2D view shows its picture on it
    QTimer::singleShot(500, [&] {
      QFile::remove(screenshot);  // what exists afterwards was saved now
      try {
        if (shows3D) container->saveScreenshot(screenshot);  // OGRE's own picture of its window
        else container->grab().save(screenshot);
      } catch (const std::exception& error) {
        std::cerr << "minimal_host: " << error.what() << std::endl;
      }
      const bool saved = QFileInfo(screenshot).size() > 0;
      std::cout << "minimal_host: " << (shows3D ? "3D" : "2D") << " view, "
                << (saved ? "saved " : "could not save ") << screenshot.toStdString() << std::endl;
      app.exit(saved ? 0 : 1);
    });
  });
  QTimer::singleShot(60000, [&] {
    std::cerr << "minimal_host: the view never became ready" << std::endl;
    app.exit(1);
  });

  window.show();
  container->onVisibilityChanged(true);  // the window exists now: the view builds its render window
  return app.exec();
}

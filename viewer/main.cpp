// render_widget_viewer: a desktop host of the world view container. It shows
// a robot (the bundled one, or a URDF file) in 3D or as a 2D picture, and can
// render headless to a picture file.
#include <iostream>

#include <QApplication>
#include <QMessageBox>
#include <QStatusBar>

#include <boost/make_shared.hpp>

#include <ku/path.h>
#include <world_model/bundled_robot.h>
#include <world_model/robot.h>
#include <world_model/world.h>

#include "screenshot_session.h"
#include "view_mode_choice.h"
#include "viewer_options.h"
#include "viewer_window.h"

namespace {

const int a_badUsageStatus = 2;
const QSize a_interactiveWindowSize(1100, 720);

int fail(const QString& message, bool interactive) {
  std::cerr << "render_widget_viewer: " << message.toStdString() << std::endl;
  if (interactive) QMessageBox::critical(nullptr, QApplication::applicationName(), message);
  return a_badUsageStatus;
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setOrganizationName("RenderWidget");
  QApplication::setApplicationName("viewer");

  ViewerOptions options;
  QString message;
  switch (ViewerOptions::parse(QApplication::arguments(), &options, &message)) {
    case ViewerOptions::Outcome::Exit:
      return 0;
    case ViewerOptions::Outcome::Error:
      return fail(message + " See --help.", false);
    case ViewerOptions::Outcome::Run:
      break;
  }
  const bool interactive = !options.headless();

  const std::string urdf =
      options.urdfFile.isEmpty() ? VX::NextGenView::bundledRobotFile("zel") : options.urdfFile.toStdString();
  if (urdf.empty()) return fail("The bundled robot zel is missing: is the project built or installed?", interactive);
  const VX::NextGenView::RobotLoadResult loaded = VX::NextGenView::Robot::loadFromUrdfFile(urdf);
  if (!loaded.robot) {
    QString reason = QString::fromStdString(loaded.error);
    if (!reason.contains(QString::fromStdString(urdf))) reason = QString::fromStdString(urdf) + ": " + reason;
    return fail("Cannot show the robot: " + reason, interactive);
  }
  if (!options.sentence.isEmpty()) loaded.robot->setSentence(options.sentence.toStdString());
  auto world = boost::make_shared<VX::NextGenView::World>();
  world->addRobot(loaded.robot);

  const ViewModeChoice choice = ViewModeChoice::choose(options);
  if (!choice.reason.isEmpty()) std::cerr << "render_widget_viewer: " << choice.reason.toStdString() << std::endl;

  ViewerWindow window(world, QString::fromStdString(ku::path::dataFolder()), choice.use3DView);
  if (!choice.reason.isEmpty()) window.statusBar()->showMessage(choice.reason);
  if (options.headless()) {
    window.setViewSize(options.size);
  } else {
    window.resize(a_interactiveWindowSize);
  }
  window.show();

  ScreenshotSession session(&window, options);
  if (options.headless()) {
    QObject::connect(&session, &ScreenshotSession::finished, &application, &QCoreApplication::exit,
                     Qt::QueuedConnection);
    session.start();
  }
  return QApplication::exec();
}

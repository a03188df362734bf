// render_widget_viewer: a desktop host of the world view container. It shows
// a robot (the bundled one, or a URDF file) in 3D or as a 2D picture, and can
// render headless to a picture file.
#include <iostream>

#include <QAction>
#include <QApplication>
#include <QCoreApplication>
#include <QMessageBox>
#include <QStatusBar>

#include <boost/make_shared.hpp>

#include <ku/path.h>
#include <world_model/bundled_robot.h>
#include <world_model/package_folders.h>
#include <world_model/robot.h>
#include <world_model/world.h>

#include "robot_check.h"
#include "robot_documents.h"
#include "joint_animator.h"
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

void nameApplication() {
  QCoreApplication::setOrganizationName("RenderWidget");
  QCoreApplication::setApplicationName("viewer");
  QCoreApplication::setApplicationVersion(RENDERWIDGET_VERSION);
}

std::string robotFile(const ViewerOptions& options) {
  return options.urdfFile.isEmpty() ? VX::NextGenView::bundledRobotFile("zel") : options.urdfFile.toStdString();
}

void usePackagePaths(const ViewerOptions& options) {
  std::vector<std::string> folders;
  for (const QString& folder : options.packagePaths) folders.push_back(folder.toStdString());
  VX::NextGenView::PackageFolders::set(folders);
}

// Reads the command line into `options`; the exit status when the run ends
// here (help, version, a bad argument), else -1.
int parseArguments(ViewerOptions* options) {
  QString message;
  switch (ViewerOptions::parse(QCoreApplication::arguments(), options, &message)) {
    case ViewerOptions::Outcome::Exit:
      return 0;
    case ViewerOptions::Outcome::Error:
      return fail(message + " See --help.", false);
    case ViewerOptions::Outcome::Run:
      break;
  }
  return -1;
}

// Help, version and the check mode need no display: they run before (and
// without) any GUI platform, under a plain QCoreApplication. Returns -1 when
// the arguments ask for the GUI after all.
int runWithoutDisplay(int argc, char** argv) {
  QCoreApplication application(argc, argv);
  nameApplication();
  ViewerOptions options;
  if (const int status = parseArguments(&options); status >= 0) return status;
  if (!options.check) return -1;
  const std::string urdf = robotFile(options);
  if (urdf.empty()) return fail("The bundled robot zel is missing: is the project built or installed?", false);
  usePackagePaths(options);
  return RobotCheck::run(urdf, std::cout);
}

}  // namespace

int main(int argc, char** argv) {
  if (ViewerOptions::mayRunWithoutDisplay(argc, argv)) {
    const int status = runWithoutDisplay(argc, argv);
    if (status >= 0) return status;
  }
  QApplication application(argc, argv);
  nameApplication();

  ViewerOptions options;
  if (const int status = parseArguments(&options); status >= 0) return status;
  const bool interactive = !options.headless();

  usePackagePaths(options);
  QStringList files = options.urdfFiles;
  if (files.isEmpty()) {
    const std::string bundled = VX::NextGenView::bundledRobotFile("zel");
    if (bundled.empty()) return fail("The bundled robot zel is missing: is the project built or installed?", interactive);
    files << QString::fromStdString(bundled);
  }
  auto world = boost::make_shared<VX::NextGenView::World>();
  auto* documents = new RobotDocuments(world);  // the window takes it over
  for (const QString& file : files) {
    QString reason;
    if (!documents->add(file, &reason)) {
      delete documents;
      return fail("Cannot show the robot: " + reason.section("Cannot load the robot: ", -1), interactive);
    }
  }
  if (!options.sentence.isEmpty()) {
    for (const auto& robot : world->robots()) robot->setSentence(options.sentence.toStdString());
  }

  const ViewModeChoice choice = ViewModeChoice::choose(options);
  if (!choice.reason.isEmpty()) std::cerr << "render_widget_viewer: " << choice.reason.toStdString() << std::endl;

  ViewerWindow window(world, QString::fromStdString(ku::path::dataFolder()), choice.use3DView);
  window.setRobotDocuments(documents);
  window.refreshRobots();
  if (!choice.reason.isEmpty()) window.statusBar()->showMessage(choice.reason);
  window.collisionGeometryAction()->setChecked(options.collisionGeometry);
  window.jointRingsAction()->setChecked(options.jointRings);
  if (options.headless()) {
    window.setViewSize(options.size);
  } else {
    window.resize(a_interactiveWindowSize);
  }
  window.show();

  JointAnimator animator(world, window.motorCommands());
  if (options.animate) animator.start();

  ScreenshotSession session(&window, options);
  if (options.headless()) {
    QObject::connect(&session, &ScreenshotSession::finished, &application, &QCoreApplication::exit,
                     Qt::QueuedConnection);
    session.start();
  }
  return QApplication::exec();
}

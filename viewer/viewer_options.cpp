#include "viewer_options.h"

#include <cstdio>

#include <QCommandLineOption>
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QRegularExpression>

const QSize ViewerOptions::a_defaultSize(800, 600);
const QStringList ViewerOptions::a_viewpoints{"Top", "Bottom", "Left", "Right", "Front", "Back"};

namespace {

const int a_minimumSide = 64;
const int a_maximumSide = 8192;

bool parseSize(const QString& text, QSize* size) {
  const QRegularExpressionMatch match = QRegularExpression("^(\\d{1,5})x(\\d{1,5})$").match(text.trimmed());
  if (!match.hasMatch()) return false;
  const int width = match.captured(1).toInt();
  const int height = match.captured(2).toInt();
  if (width < a_minimumSide || height < a_minimumSide || width > a_maximumSide || height > a_maximumSide) {
    return false;
  }
  *size = QSize(width, height);
  return true;
}

}  // namespace

bool ViewerOptions::mayRunWithoutDisplay(int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    const QByteArray argument(argv[i]);
    for (const char* option : {"--check", "-h", "--help", "-?", "--help-all", "-v", "--version"}) {
      if (argument == option) return true;
    }
  }
  return false;
}

ViewerOptions::Outcome ViewerOptions::parse(const QStringList& arguments, ViewerOptions* options, QString* message) {
  QCommandLineParser parser;
  parser.setApplicationDescription(
      "Shows a robot in 3D (or as a clickable 2D picture); drag the joint rings or use the sliders to move it.");
  const QCommandLineOption helpOption = parser.addHelpOption();
  const QCommandLineOption force2D("2d", "Show the 2D picture view instead of the 3D view.");
  const QCommandLineOption force3D("3d", "Show the 3D view even when the last 3D start-up did not finish.");
  const QCommandLineOption screenshot("screenshot", "Render headless, save the view to <file> and exit.", "file");
  const QCommandLineOption viewpoint("viewpoint", "Camera viewpoint for --screenshot: " + a_viewpoints.join('|') + ".",
                                     "name");
  const QCommandLineOption size("size", "View size for --screenshot (default 800x600).", "WxH");
  const QCommandLineOption say("say", "What the robot says at start (shown by the 3D view).", "sentence");
  const QCommandLineOption animate("animate", "Keep the robot moving: every joint follows a slow sine wave.");
  const QCommandLineOption versionOption({"v", "version"}, "Print the version and exit.");
  const QCommandLineOption check("check",
                                 "Load the robot and all its meshes without a display, print a summary and one line "
                                 "per problem, and exit: 0 when everything can be shown, 1 when some geometry "
                                 "cannot, 2 when the robot cannot be loaded.");
  const QCommandLineOption packagePath("package-path",
                                       "A folder searched first for package:// meshes (its <package> subfolders, or "
                                       "folders whose package.xml names the package); repeatable.",
                                       "dir");
  const QCommandLineOption noBackground("no-background", "With --screenshot: hide the sky in the picture.");
  // For the documentation's pictures: the whole main window, toolbars and sliders included.
  QCommandLineOption windowScreenshot("window-screenshot", "Save the whole window to <file> and exit.", "file");
  windowScreenshot.setFlags(QCommandLineOption::HiddenFromHelp);
  const QCommandLineOption collision("collision", "Show each link's collision geometry instead of its visuals.");
  const QCommandLineOption noRings("no-rings", "Hide the joint rings of the 3D view.");
  parser.addOptions({versionOption, force2D, force3D, screenshot, viewpoint, size, say, check, packagePath,
                     noBackground, collision, noRings, animate, windowScreenshot});
  parser.addPositionalArgument("urdf",
                               "The robot descriptions to show in one world (default: the bundled robot); "
                               "each stands at its <base>, or beside the previous ones.",
                               "[urdf...]");

  if (!parser.parse(arguments)) {
    *message = parser.errorText();
    return Outcome::Error;
  }
  if (parser.isSet(helpOption) || parser.isSet("help-all")) {
    std::fputs(qPrintable(parser.helpText()), stdout);
    return Outcome::Exit;
  }
  if (parser.isSet(versionOption)) {
    std::printf("render_widget_viewer %s\n", qPrintable(QCoreApplication::applicationVersion()));
    return Outcome::Exit;
  }

  ViewerOptions result;
  const QStringList positional = parser.positionalArguments();
  result.urdfFiles = positional;
  if (!positional.isEmpty()) result.urdfFile = positional.first();
  result.force2D = parser.isSet(force2D);
  result.force3D = parser.isSet(force3D);
  if (result.force2D && result.force3D) {
    *message = "--2d and --3d exclude each other.";
    return Outcome::Error;
  }
  result.screenshotFile = parser.value(screenshot);
  result.windowScreenshotFile = parser.value(windowScreenshot);
  if (parser.isSet(viewpoint)) {
    for (const QString& name : a_viewpoints) {
      if (name.compare(parser.value(viewpoint), Qt::CaseInsensitive) == 0) result.viewpoint = name;
    }
    if (result.viewpoint.isEmpty()) {
      *message =
          QString("Unknown viewpoint \"%1\"; use one of %2.").arg(parser.value(viewpoint), a_viewpoints.join(", "));
      return Outcome::Error;
    }
  }
  if (parser.isSet(size) && !parseSize(parser.value(size), &result.size)) {
    *message = QString("Bad size \"%1\": give WxH, each side from %2 to %3 pixels.")
                   .arg(parser.value(size))
                   .arg(a_minimumSide)
                   .arg(a_maximumSide);
    return Outcome::Error;
  }
  result.sentence = parser.value(say);
  result.collisionGeometry = parser.isSet(collision);
  result.jointRings = !parser.isSet(noRings);
  result.check = parser.isSet(check);
  result.packagePaths = parser.values(packagePath);
  result.noBackground = parser.isSet(noBackground);
  if (result.noBackground && result.screenshotFile.isEmpty()) {
    *message = "--no-background goes with --screenshot.";
    return Outcome::Error;
  }
  if (result.check && result.headless()) {
    *message = "--check saves no picture; leave out --screenshot and --window-screenshot.";
    return Outcome::Error;
  }
  result.animate = parser.isSet(animate);
  *options = result;
  return Outcome::Run;
}

#pragma once
// What the viewer's command line asks for.

#include <QSize>
#include <QString>
#include <QStringList>

class ViewerOptions {
 public:
  enum class Outcome { Run, Exit, Error };

  static const QSize a_defaultSize;
  // The camera's viewpoints, as its menu names them.
  static const QStringList a_viewpoints;

  // Reads the arguments (the program name first, as QCoreApplication::arguments()
  // gives them). Exit: help or version was printed. Error: `message` says why.
  static Outcome parse(const QStringList& arguments, ViewerOptions* options, QString* message);

  QString urdfFile;              // the first of urdfFiles; empty: the bundled robot
  QStringList urdfFiles;         // every robot to show, in one world
  bool force2D = false;          // --2d
  bool force3D = false;          // --3d
  QString screenshotFile;        // --screenshot: render, save the view, exit
  QString windowScreenshotFile;  // --window-screenshot: the same with the whole window
  QString viewpoint;             // --viewpoint, one of a_viewpoints; empty keeps the camera's
  QSize size = a_defaultSize;    // --size: the view's size when rendering headless
  QString sentence;              // --say: what the robot says at start
  bool animate = false;          // --animate: the joints follow slow sine waves
  bool collisionGeometry = false;  // --collision: collision shapes instead of visuals
  bool jointRings = true;          // --no-rings hides them
  bool check = false;            // --check: load the robot and its meshes, report, exit (no display)
  QStringList packagePaths;      // --package-path, repeatable: searched first for package:// meshes
  bool noBackground = false;     // --no-background: --screenshot hides the sky

  // True when the arguments may ask for a run that needs no display (help,
  // version, check): such runs must not start a GUI platform.
  static bool mayRunWithoutDisplay(int argc, char** argv);

  // Headless runs save pictures and exit; nothing waits for the user.
  bool headless() const { return !screenshotFile.isEmpty() || !windowScreenshotFile.isEmpty(); }
};

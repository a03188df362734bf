// picture_check <picture.png> 3d|2d: does a screenshot of the view show the
// robot, and around it the sky (3D) or the 2D view's background colour?
// Prints what it measured; exit status 0 when the picture passes.
#include <cstdlib>
#include <iostream>

#include <QColor>
#include <QCoreApplication>
#include <QImage>

namespace {

// The sky is a light blue (about 137, 175, 224 at the top): blue above green
// above red. The 2D view's purple-blue (84, 84, 168) is not sky.
bool isSkyBlue(QRgb pixel) {
  return qBlue(pixel) >= 190 && qBlue(pixel) >= qGreen(pixel) + 20 && qGreen(pixel) >= qRed(pixel) + 20;
}

int difference(QRgb a, QRgb b) {
  return std::abs(qRed(a) - qRed(b)) + std::abs(qGreen(a) - qGreen(b)) + std::abs(qBlue(a) - qBlue(b));
}

// The sky and the 2D view's background change at most slowly from left to
// right; the robot stands in the middle. A pixel of the middle third that
// differs clearly from the left edge of its row belongs to the robot.
double robotShare(const QImage& image) {
  int robot = 0;
  for (int y = 0; y < image.height(); ++y) {
    const QRgb edge = image.pixel(2, y);
    for (int x = image.width() / 3; x < 2 * image.width() / 3; ++x) robot += difference(image.pixel(x, y), edge) > 60;
  }
  return double(robot) / (image.width() * image.height());
}

// Share of the top tenth of the picture that is sky blue.
double skyShare(const QImage& image) {
  int sky = 0, all = 0;
  for (int y = 0; y < image.height() / 10; ++y) {
    for (int x = 0; x < image.width(); ++x, ++all) sky += isSkyBlue(image.pixel(x, y));
  }
  return all ? double(sky) / all : 0.0;
}

// Share of the four corners' pixels that are exactly the 2D view's colour.
double backgroundShare(const QImage& image) {
  const QRgb background = QColor(84, 84, 168).rgb() & 0xffffff;
  int matching = 0;
  for (int x : {1, image.width() - 2}) {
    for (int y : {1, image.height() - 2}) matching += (image.pixel(x, y) & 0xffffff) == background;
  }
  return matching / 4.0;
}

}  // namespace

int main(int argc, char** argv) {
  QCoreApplication application(argc, argv);
  if (argc != 3 || (QString(argv[2]) != "3d" && QString(argv[2]) != "2d")) {
    std::cerr << "usage: picture_check <picture.png> 3d|2d" << std::endl;
    return 2;
  }
  const QImage image = QImage(argv[1]).convertToFormat(QImage::Format_RGB32);
  if (image.isNull() || image.width() < 100 || image.height() < 100) {
    std::cerr << "picture_check: " << argv[1] << " is missing, unreadable or too small" << std::endl;
    return 1;
  }
  const bool threeD = QString(argv[2]) == "3d";
  const double robot = robotShare(image);
  const double surrounding = threeD ? skyShare(image) : backgroundShare(image);
  std::cout << "picture_check: " << argv[1] << " " << image.width() << "x" << image.height() << ", robot "
            << robot * 100 << " % of the picture, " << (threeD ? "sky " : "background ") << surrounding * 100
            << " % of the " << (threeD ? "top tenth" : "corners") << std::endl;
  const bool robotThere = robot > 0.02;
  const bool surroundingThere = threeD ? surrounding > 0.9 : surrounding == 1.0;
  if (!robotThere) std::cerr << "picture_check: no robot in the middle of the picture" << std::endl;
  if (!surroundingThere) std::cerr << "picture_check: " << (threeD ? "no sky" : "no 2D background") << std::endl;
  return robotThere && surroundingThere ? 0 : 1;
}

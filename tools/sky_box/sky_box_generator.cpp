// Writes the six faces of the sky cube map used by the material "sky":
//   sky_box_generator <output folder> [face size in pixels, default 256]
// Faces are named as OGRE's cubic_texture expects them: <name>_fr, _bk, _lf,
// _rt, _up, _dn. The sky box is authored Y-up, like OGRE's own sky boxes;
// the 3D view turns it a quarter turn about +X to match its Z-up scene.

#include <QDir>
#include <QImage>
#include <QString>

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "sky_colour.h"

namespace {

enum class Face { Side, Up, Down };

// Elevation of the view direction through a pixel. Side faces: the image's
// top row looks up; up and down faces: the centre looks straight up or down.
double elevationAt(Face face, int column, int row, int size) {
  const double s = 2.0 * (column + 0.5) / size - 1.0;
  const double t = 2.0 * (row + 0.5) / size - 1.0;
  switch (face) {
    case Face::Side:
      return std::atan2(-t, std::sqrt(1.0 + s * s));
    case Face::Up:
      return std::atan2(1.0, std::sqrt(s * s + t * t));
    case Face::Down:
      return -std::atan2(1.0, std::sqrt(s * s + t * t));
  }
  return 0.0;
}

bool writeFace(const QString& path, Face face, int size) {
  QImage image(size, size, QImage::Format_RGB888);
  for (int row = 0; row < size; ++row) {
    for (int column = 0; column < size; ++column) {
      image.setPixelColor(column, row, skyColour(elevationAt(face, column, row, size)));
    }
  }
  return image.save(path, "PNG");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2 || argc > 3) {
    std::fprintf(stderr, "usage: %s <output folder> [face size]\n", argv[0]);
    return 2;
  }
  const QString folder = QString::fromLocal8Bit(argv[1]);
  const int size = argc == 3 ? std::atoi(argv[2]) : 256;
  if (size < 2 || size > 4096) {
    std::fprintf(stderr, "face size must be between 2 and 4096\n");
    return 2;
  }
  if (!QDir().mkpath(folder)) {
    std::fprintf(stderr, "cannot create %s\n", argv[1]);
    return 1;
  }
  struct Named {
    const char* suffix;
    Face face;
  };
  const Named faces[] = {{"fr", Face::Side}, {"bk", Face::Side}, {"lf", Face::Side},
                         {"rt", Face::Side}, {"up", Face::Up},   {"dn", Face::Down}};
  for (const Named& named : faces) {
    const QString path = QDir(folder).filePath(QStringLiteral("sky_%1.png").arg(named.suffix));
    if (!writeFace(path, named.face, size)) {
      std::fprintf(stderr, "cannot write %s\n", qPrintable(path));
      return 1;
    }
  }
  return 0;
}

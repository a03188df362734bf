// Renders the pictures of the 2D view from the bundled robot:
//   bitmap_picture_renderer <output folder>
// writes zel.png (nothing highlighted), zel_<chain>.png for each body chain
// (that chain highlighted) and zel_unknown.png (no robot known), all of the
// same size with a transparent background. For each chain it prints the
// bounding box of the pixels the highlight changes, the numbers the 2D
// view's clickable rectangles must agree with. scripts/render-pictures.sh
// runs it on a display and refreshes media/images/ogre/.

#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QRect>

#include <cstdio>
#include <string>

#include <world_model/actuators_tree.h>
#include <world_model/robot.h>

#include "picture_layout.h"
#include "picture_renderer.h"
#include "unknown_picture.h"

namespace {

bool save(const QImage& picture, const QDir& folder, const QString& name) {
  const QString path = folder.filePath(name);
  if (picture.save(path, "PNG")) return true;
  std::fprintf(stderr, "bitmap_picture_renderer: cannot write %s\n", qPrintable(path));
  return false;
}

QRect changedBounds(const QImage& a, const QImage& b, int* count) {
  QRect bounds;
  *count = 0;
  for (int y = 0; y < a.height(); ++y) {
    for (int x = 0; x < a.width(); ++x) {
      if (a.pixel(x, y) == b.pixel(x, y)) continue;
      bounds |= QRect(x, y, 1, 1);
      ++*count;
    }
  }
  return bounds;
}

}  // namespace

int main(int argc, char** argv) {
  QGuiApplication application(argc, argv);  // fonts for the question mark
  if (argc != 2) {
    std::fprintf(stderr, "usage: bitmap_picture_renderer <output folder>\n");
    return 2;
  }
  const QDir folder(QString::fromLocal8Bit(argv[1]));
  if (!folder.mkpath(".")) {
    std::fprintf(stderr, "bitmap_picture_renderer: cannot create %s\n", argv[1]);
    return 1;
  }

  VX::NextGenView::PictureRenderer renderer{VX::NextGenView::PictureLayout()};
  if (!renderer.error().empty()) {
    std::fprintf(stderr, "bitmap_picture_renderer: %s\n", renderer.error().c_str());
    return 1;
  }
  const QImage whole = renderer.render("");
  bool written = save(whole, folder, "zel.png");
  written = save(VX::NextGenView::UnknownPicture::fromRobotPicture(whole), folder, "zel_unknown.png") && written;
  for (const auto& chain : renderer.robot()->rootTree()->children()) {
    const QImage highlighted = renderer.render(chain->name());
    written = save(highlighted, folder, QString::fromStdString("zel_" + chain->name() + ".png")) && written;
    int count = 0;
    const QRect bounds = changedBounds(whole, highlighted, &count);
    std::printf("%-5s %6d pixels changed, within (%d, %d)-(%d, %d)\n", chain->name().c_str(), count, bounds.left(),
                bounds.top(), bounds.right(), bounds.bottom());
  }
  return written ? 0 : 1;
}

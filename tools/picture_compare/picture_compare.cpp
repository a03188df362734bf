// Compares two renderings of one view and says whether they are the same
// picture for the eye: the mean absolute difference per channel and the worst
// 16 × 16 block, in levels of 255.
//   picture_compare <before.png> <after.png> [difference.png]
// Exit status 0 when within the frame pictures' limits, 1 when not, 2 on
// unreadable input. The optional third file gets the difference, amplified 16 times.
#include <cstdio>

#include <QImage>
#include <QString>

#include "picture_difference.h"

int main(int argc, char** argv) {
  if (argc < 3 || argc > 4) {
    std::fprintf(stderr, "usage: %s <before.png> <after.png> [difference.png]\n", argv[0]);
    return 2;
  }
  const QImage before(QString::fromLocal8Bit(argv[1]));
  const QImage after(QString::fromLocal8Bit(argv[2]));
  if (before.isNull() || after.isNull()) {
    std::fprintf(stderr, "cannot read %s\n", before.isNull() ? argv[1] : argv[2]);
    return 2;
  }
  const PictureDifference d = comparePictures(before, after);
  if (!d.sameSize) {
    std::fprintf(stderr, "the pictures differ in size\n");
    return 1;
  }
  std::printf("mean |difference| r %.3f g %.3f b %.3f; worst 16x16 block %.2f at (%d, %d); largest pixel %d\n",
              d.meanPerChannel[0], d.meanPerChannel[1], d.meanPerChannel[2], d.worstBlockMean, d.worstBlock.x(),
              d.worstBlock.y(), d.largestPixelDifference);
  if (argc == 4) differencePicture(before, after).save(QString::fromLocal8Bit(argv[3]));
  const bool same = d.within(a_meanLimit, a_blockLimit);
  std::printf("%s\n", same ? "same picture" : "DIFFERENT");
  return same ? 0 : 1;
}

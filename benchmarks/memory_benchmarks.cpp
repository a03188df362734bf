// 5. Resident memory after start-up, after many frames and after many picks.
// Each pick leaves its ray-query object alive, so picks should show growth.
// A thousand picks may fit in free heap the process already holds, so a
// longer run of picks follows, where the growth reaches the resident size.
#include <string>

#include "fixtures.h"
#include "measures.h"
#include "render_widget.h"
#include "selection.h"
#include "suite.h"
#include "widget_access.h"

namespace bench {
namespace {

void memory(benchmark::State& state, int frames, int picks, int morePicks) {
  releaseFixture();  // this case builds its own view, from nothing
  for (auto _ : state) {
    ShownContainer shown(320, 240, false);  // small: 10 000 frames must stay quick
    if (!shown.error.empty()) return state.SkipWithError(shown.error.c_str());
    VX::NextGenView::RenderWidget& widget = *shown.widget();
    VX::NextGenView::Selection& selection = *VX::NextGenView::RenderWidgetTestAccess::selection(widget);
    const QPoint torso = shown.torsoPixel();

    const double rssStart = residentKiB(), heapStart = double(heapBytesInUse());
    for (int i = 0; i < frames; ++i) widget.updateView();
    const double rssFrames = residentKiB(), heapFrames = double(heapBytesInUse());
    auto pick = [&](int count) {
      for (int i = 0; i < count; ++i) {
        std::string name;
        selection.pick(torso.x(), torso.y(), &widget, name);
      }
    };
    pick(picks);
    const double rssPicks = residentKiB(), heapPicks = double(heapBytesInUse());
    pick(morePicks);
    const double rssMore = residentKiB(), heapMore = double(heapBytesInUse());

    state.counters["frames"] = frames;
    state.counters["picks"] = picks;
    state.counters["rss_startup_KiB"] = rssStart;
    state.counters["rss_after_frames_KiB"] = rssFrames;
    state.counters["rss_after_picks_KiB"] = rssPicks;
    state.counters["more_picks"] = morePicks;
    state.counters["rss_after_more_picks_KiB"] = rssMore;
    state.counters["rss_bytes_per_frame"] = (rssFrames - rssStart) * 1024.0 / frames;
    state.counters["rss_bytes_per_pick"] = (rssPicks - rssFrames) * 1024.0 / picks;
    // The heap counts bytes exactly; resident memory moves by whole pages.
    state.counters["heap_bytes_per_frame"] = (heapFrames - heapStart) / frames;
    state.counters["heap_bytes_per_pick"] = (heapPicks - heapFrames) / picks;
    state.counters["rss_bytes_per_more_pick"] = (rssMore - rssPicks) * 1024.0 / morePicks;
    state.counters["heap_bytes_per_more_pick"] = (heapMore - heapPicks) / morePicks;
  }
}

}  // namespace

void registerMemoryBenchmarks(const Settings& settings) {
  const int frames = settings.quick ? 100 : 10000;
  const int picks = settings.quick ? 10 : 1000;
  const int morePicks = settings.quick ? 100 : 50000;
  benchmark::RegisterBenchmark("Memory/frames_then_picks", memory, frames, picks, morePicks)
      ->Iterations(1)
      ->Repetitions(1)
      ->UseRealTime()
      ->Unit(benchmark::kMillisecond);
}

}  // namespace bench

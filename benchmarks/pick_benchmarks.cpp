// 2. Selection::pick on the bundled robot and on generated meshes, with the
// number of triangles each pick tests and the time per triangle.
#include <string>

#include <OgreCamera.h>

#include <scene_view/world_3d_view.h>

#include "camera.h"
#include "fixtures.h"
#include "measures.h"
#include "render_widget.h"
#include "selection.h"
#include "suite.h"
#include "widget_access.h"

using VX::NextGenView::RenderWidgetTestAccess;

namespace bench {
namespace {

void reportTriangles(benchmark::State& state, unsigned long tested) {
  state.counters["triangles"] = double(tested);
  // Seconds per triangle (time divided by triangles × iterations).
  if (tested > 0) {
    state.counters["time_per_triangle"] =
        benchmark::Counter(double(tested), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
  }
}

// The bundled robot in the 800 × 600 view: `onTorso` picks the middle of the
// torso, otherwise a corner of the sky.
void robotPick(benchmark::State& state, bool onTorso) {
  auto& shown = fixture<ShownContainer>("container/800x600/links", 800, 600, false);
  if (!shown.error.empty()) return state.SkipWithError(shown.error.c_str());
  VX::NextGenView::RenderWidget& widget = *shown.widget();
  const Ogre::Camera& camera = *widget.camera()->ogreCamera();
  VX::NextGenView::Selection& selection = *RenderWidgetTestAccess::selection(widget);

  const QPoint pixel = onTorso ? shown.torsoPixel() : QPoint(8, 8);
  std::string name;
  const bool hit = selection.pick(pixel.x(), pixel.y(), &widget, name);
  if (hit != onTorso || (onTorso && name != "TorsoLink")) {
    return state.SkipWithError(("the pick found '" + name + "', not what was aimed at").c_str());
  }
  const unsigned long tested =
      trianglesTested(*widget.worldView()->getOgreSceneManager(), selection, rayThrough(camera, widget, pixel));

  for (auto _ : state) {
    std::string found;
    benchmark::DoNotOptimize(selection.pick(pixel.x(), pixel.y(), &widget, found));
  }
  reportTriangles(state, tested);
}

void generatedPick(benchmark::State& state, std::string kind) {
  auto& scene = fixture<GeneratedScene>("generated/" + kind, kind);
  if (!scene.error.empty()) return state.SkipWithError(scene.error.c_str());
  const QPoint pixel = scene.target();
  std::string name;
  if (!scene.selection->pick(pixel.x(), pixel.y(), &scene.surface, name) || name != scene.expectedName) {
    return state.SkipWithError(("the pick found '" + name + "', not " + scene.expectedName).c_str());
  }
  const unsigned long tested =
      trianglesTested(*scene.scene, *scene.selection, rayThrough(*scene.camera, scene.surface, pixel));

  for (auto _ : state) {
    std::string found;
    benchmark::DoNotOptimize(scene.selection->pick(pixel.x(), pixel.y(), &scene.surface, found));
  }
  reportTriangles(state, tested);
}

}  // namespace

void registerPickBenchmarks(const Settings& settings) {
  repeated(benchmark::RegisterBenchmark("Pick/robot_torso_hit", robotPick, true), settings, 10, 0.2)
      ->Unit(benchmark::kMicrosecond);
  repeated(benchmark::RegisterBenchmark("Pick/robot_sky_miss", robotPick, false), settings, 10, 0.2)
      ->Unit(benchmark::kMicrosecond);
  for (const char* kind : {"grid_10k", "grid_100k", "grid_1M", "stack_100x10k"}) {
    repeated(benchmark::RegisterBenchmark((std::string("Pick/") + kind).c_str(), generatedPick, std::string(kind)),
             settings, 10, 0.2)
        ->Unit(benchmark::kMicrosecond);
  }
}

}  // namespace bench

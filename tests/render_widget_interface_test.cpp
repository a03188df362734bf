#include "render_widget_interface.h"

#include <gtest/gtest.h>

#include <QMetaMethod>
#include <QSignalSpy>

#include <vector>

#include <Overlay/OgreOverlay.h>
#include <Overlay/OgreTextAreaOverlayElement.h>

#include "render_widget_2d.h"
#include "support/meta_object_table.h"
#include "support/widget_window.h"

using VX::NextGenView::RenderWidget;
using VX::NextGenView::RenderWidget2d;
using VX::NextGenView::RenderWidgetInterface;
using VX::NextGenView::RenderWidgetTestAccess;

namespace {

// The smallest concrete view: its surface is built at once.
class CountingView : public RenderWidgetInterface {
 public:
  using RenderWidgetInterface::RenderWidgetInterface;
  void initRenderWindow() override { markInitialized(); }
  void updateView() override { ++updates; }
  void displayInfo(bool shown) override { lastInfo = shown; }
  int updates = 0;
  bool lastInfo = false;
};

TEST(RenderWidgetInterface, MetaObjectTableInOrder) {
  expectMethods(RenderWidgetInterface::staticMetaObject,
                {
                    {QMetaMethod::Signal, QMetaMethod::Public, "chainSelected(QString)", {"chainName"}},
                    {QMetaMethod::Signal, QMetaMethod::Public, "renderWindowReady()", {}},
                    {QMetaMethod::Slot, QMetaMethod::Public, "updateView()", {}},
                    {QMetaMethod::Slot, QMetaMethod::Public, "displayInfo(bool)", {"isInfoDisplayed"}},
                });
}

TEST(RenderWidgetInterface, StartsUninitialised) {
  QWidget parent;
  CountingView view(&parent);
  EXPECT_FALSE(view.m_initialized);
  EXPECT_EQ(view.parentWidget(), &parent);
}

TEST(RenderWidgetInterface, ReadySignalComesOnce) {
  CountingView view(nullptr);
  QSignalSpy ready(&view, &RenderWidgetInterface::renderWindowReady);
  view.initRenderWindow();
  EXPECT_TRUE(view.m_initialized);
  view.initRenderWindow();
  EXPECT_EQ(ready.count(), 1);
}

// Calls one of the interface's slots through the interface's own meta-object,
// as a connection made on the interface does.
bool invokeInterfaceSlot(RenderWidgetInterface* view, const char* signature,
                         QGenericArgument argument = QGenericArgument()) {
  const QMetaObject& meta = RenderWidgetInterface::staticMetaObject;
  const int index = meta.indexOfSlot(signature);
  return index >= 0 && meta.method(index).invoke(view, Qt::DirectConnection, argument);
}

TEST(RenderWidgetInterface, SlotsDispatchToTheDerivedView) {
  CountingView view(nullptr);
  ASSERT_TRUE(invokeInterfaceSlot(&view, "updateView()"));
  ASSERT_TRUE(invokeInterfaceSlot(&view, "displayInfo(bool)", Q_ARG(bool, true)));
  EXPECT_EQ(view.updates, 1);
  EXPECT_TRUE(view.lastInfo);
}

// The 2D view, with a spy on the one slot that has no effect of its own.
class Spied2d : public RenderWidget2d {
 public:
  using RenderWidget2d::RenderWidget2d;
  void displayInfo(bool shown) override {
    RenderWidget2d::displayInfo(shown);
    infoCalls.push_back(shown);
  }
  std::vector<bool> infoCalls;
};

TEST(RenderWidgetInterface, SlotsDispatchToTheTwoDimensionalView) {
  Spied2d view(nullptr, testing_support::worldWithBundledRobot(), "/no/pictures");
  QSignalSpy chains(&view, &RenderWidgetInterface::chainSelected);
  ASSERT_TRUE(invokeInterfaceSlot(&view, "updateView()"));
  ASSERT_EQ(chains.count(), 1) << "the 2D view announces the whole robot";
  EXPECT_EQ(view.bitmapAreas().size(), 5);
  const QString picture = view.currentImage();

  ASSERT_TRUE(invokeInterfaceSlot(&view, "displayInfo(bool)", Q_ARG(bool, true)));
  EXPECT_EQ(view.infoCalls, std::vector<bool>({true})) << "the call reaches the 2D view";
  // The 2D view has no information overlay: the call changes nothing.
  EXPECT_EQ(chains.count(), 1);
  EXPECT_EQ(view.bitmapAreas().size(), 5);
  EXPECT_EQ(view.currentImage(), picture);
}

TEST(RenderWidgetInterface, SlotsDispatchToTheThreeDimensionalView) {
  testing_support::WidgetWindow window;
  ASSERT_TRUE(window.show());
  Ogre::TextAreaOverlayElement* info = RenderWidgetTestAccess::infoArea(*window.widget);
  ASSERT_TRUE(invokeInterfaceSlot(window.widget, "updateView()"));
  EXPECT_TRUE(RenderWidgetTestAccess::overlay(*window.widget)->isVisible()) << "a frame was drawn";
  EXPECT_EQ(info->getCaption().asUTF8(), "");
  ASSERT_TRUE(invokeInterfaceSlot(window.widget, "displayInfo(bool)", Q_ARG(bool, true)));
  window.widget->updateView();
  EXPECT_EQ(info->getCaption().asUTF8().rfind("FPS: ", 0), 0u) << info->getCaption().asUTF8();
}

TEST(RenderWidgetInterface, CarriesRunTimeTypeInformation) {
  CountingView view(nullptr);
  RenderWidgetInterface* base = &view;
  EXPECT_EQ(dynamic_cast<CountingView*>(base), &view);
}

}  // namespace

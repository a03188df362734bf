#include "render_widget_interface.h"

#include <gtest/gtest.h>

#include <QMetaMethod>
#include <QSignalSpy>

#include "support/meta_object_table.h"

using VX::NextGenView::RenderWidgetInterface;

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

TEST(RenderWidgetInterface, SlotsDispatchToTheDerivedView) {
  CountingView view(nullptr);
  ASSERT_TRUE(QMetaObject::invokeMethod(&view, "updateView"));
  ASSERT_TRUE(QMetaObject::invokeMethod(&view, "displayInfo", Q_ARG(bool, true)));
  EXPECT_EQ(view.updates, 1);
  EXPECT_TRUE(view.lastInfo);
}

TEST(RenderWidgetInterface, CarriesRunTimeTypeInformation) {
  CountingView view(nullptr);
  RenderWidgetInterface* base = &view;
  EXPECT_EQ(dynamic_cast<CountingView*>(base), &view);
}

}  // namespace

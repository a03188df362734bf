#pragma once
// One slider per actuator, within its limits, the usual alternative to
// dragging the joint rings. Moving a slider asks for a command; commands
// applied from anywhere (the rings included) move the sliders back into step
// without asking again.
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <boost/shared_ptr.hpp>

class QLabel;
class QSlider;

namespace VX::NextGenView {
class World;
}

class JointSliderPanel : public QWidget {
  Q_OBJECT

 public:
  // Slider positions per radian: a thousandth of a radian per step.
  static constexpr int a_stepsPerRadian = 1000;
  // The range given to a joint without limits (continuous), in radians.
  static constexpr float a_unlimitedRange = 3.14159265f;

  // A slider for each actuator of the world's robots; a name that several
  // robots share gets one slider.
  JointSliderPanel(boost::shared_ptr<VX::NextGenView::World> world, QWidget* parent = nullptr);

  QStringList actuatorNames() const { return m_sliders.keys(); }
  // Null for an unknown name.
  QSlider* slider(const QString& name) const { return m_sliders.value(name); }
  // The slider's position in radians; 0 for an unknown name.
  float sliderValue(const QString& name) const;

 signals:
  void commandRequested(const QString& name, float radians);

 public slots:
  void onCommandsApplied(const QStringList& names, const QList<float>& commands);

 private:
  void addSlider(const QString& name, float lower, float upper, float command);
  void showValue(const QString& name, float radians);

  QMap<QString, QSlider*> m_sliders;
  QMap<QString, QLabel*> m_values;
};

#pragma once
// One slider per actuator, within its limits, the usual alternative to
// dragging the joint rings: turning joints in degrees, prismatic joints in
// millimetres. Joints that mimic another have no actuator, hence no slider. Moving a slider asks for a command; commands
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
  // Slider positions per metre of a prismatic joint: a tenth of a millimetre per step.
  static constexpr int a_stepsPerMetre = 10000;
  // The range given to a joint without limits (continuous), in radians.
  static constexpr float a_unlimitedRange = 3.14159265f;

  // A slider for each actuator of the world's robots; a name that several
  // robots share gets one slider.
  JointSliderPanel(boost::shared_ptr<VX::NextGenView::World> world, QWidget* parent = nullptr);

  QStringList actuatorNames() const { return m_sliders.keys(); }
  // Null for an unknown name.
  QSlider* slider(const QString& name) const { return m_sliders.value(name); }
  // The slider's position in radians (metres for a prismatic joint); 0 for an unknown name.
  float sliderValue(const QString& name) const;
  // The value shown next to the slider, e.g. "12.5°" or "30.0 mm".
  QString shownValue(const QString& name) const;

 signals:
  // In the actuator's unit: radians, or metres for a prismatic joint.
  void commandRequested(const QString& name, float value);

 public slots:
  void onCommandsApplied(const QStringList& names, const QList<float>& commands);

 private:
  void addSlider(const QString& name, float lower, float upper, float command, bool prismatic);
  void showValue(const QString& name, float value);
  int toSteps(const QString& name, float value) const;
  float fromSteps(const QString& name, int steps) const;

  QMap<QString, QSlider*> m_sliders;
  QMap<QString, bool> m_prismatic;
  QMap<QString, QLabel*> m_values;
};

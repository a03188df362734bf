#include "joint_slider_panel.h"

#include <cmath>

#include <QFormLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QSlider>
#include <QHBoxLayout>

#include <world_model/actuator.h>
#include <world_model/robot.h>
#include <world_model/world.h>

using VX::NextGenView::Actuator;
using VX::NextGenView::Robot;

namespace {

int stepsPerUnit(bool prismatic) {
  return prismatic ? JointSliderPanel::a_stepsPerMetre : JointSliderPanel::a_stepsPerRadian;
}

float finiteOr(float limit, float fallback) { return std::isfinite(limit) ? limit : fallback; }

}  // namespace

JointSliderPanel::JointSliderPanel(boost::shared_ptr<VX::NextGenView::World> world, QWidget* parent) : QWidget(parent) {
  auto* layout = new QFormLayout(this);
  layout->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  if (!world) return;
  for (const boost::shared_ptr<Robot>& robot : world->robots()) {
    for (const boost::shared_ptr<Actuator>& actuator : robot->actuators()) {
      const QString name = QString::fromStdString(actuator->name());
      if (m_sliders.contains(name)) continue;
      addSlider(name, finiteOr(actuator->lowerLimit(), -a_unlimitedRange),
                finiteOr(actuator->upperLimit(), a_unlimitedRange), actuator->command(), actuator->isPrismatic());
    }
  }
}

void JointSliderPanel::addSlider(const QString& name, float lower, float upper, float command, bool prismatic) {
  m_prismatic.insert(name, prismatic);
  auto* slider = new QSlider(Qt::Horizontal, this);
  slider->setObjectName(name);
  slider->setRange(toSteps(name, lower), toSteps(name, upper));
  // A hundredth of a radian or a millimetre per arrow key, ten times that per page.
  slider->setSingleStep(toSteps(name, prismatic ? 0.001f : 0.01f));
  slider->setPageStep(toSteps(name, prismatic ? 0.01f : 0.1f));
  slider->setValue(toSteps(name, command));
  if (prismatic) {
    slider->setToolTip(QString("%1: %2 to %3 mm")
                           .arg(name)
                           .arg(static_cast<double>(lower) * 1000.0, 0, 'f', 1)
                           .arg(static_cast<double>(upper) * 1000.0, 0, 'f', 1));
  } else {
    slider->setToolTip(QString("%1: %2 to %3 rad")
                           .arg(name)
                           .arg(static_cast<double>(lower), 0, 'f', 2)
                           .arg(static_cast<double>(upper), 0, 'f', 2));
  }
  auto* value = new QLabel(this);
  value->setMinimumWidth(value->fontMetrics().horizontalAdvance("-0000.0 mm"));
  value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);

  auto* row = new QWidget(this);
  auto* rowLayout = new QHBoxLayout(row);
  rowLayout->setContentsMargins(0, 0, 0, 0);
  rowLayout->addWidget(slider, 1);
  rowLayout->addWidget(value);
  static_cast<QFormLayout*>(layout())->addRow(name, row);

  m_sliders.insert(name, slider);
  m_values.insert(name, value);
  showValue(name, command);
  connect(slider, &QSlider::valueChanged, this, [this, name](int steps) {
    showValue(name, fromSteps(name, steps));
    emit commandRequested(name, fromSteps(name, steps));
  });
}

int JointSliderPanel::toSteps(const QString& name, float value) const {
  return static_cast<int>(std::lround(value * stepsPerUnit(m_prismatic.value(name))));
}

float JointSliderPanel::fromSteps(const QString& name, int steps) const {
  return static_cast<float>(steps) / stepsPerUnit(m_prismatic.value(name));
}

float JointSliderPanel::sliderValue(const QString& name) const {
  const QSlider* slider = m_sliders.value(name);
  return slider ? fromSteps(name, slider->value()) : 0.0f;
}

QString JointSliderPanel::shownValue(const QString& name) const {
  const QLabel* label = m_values.value(name);
  return label ? label->text() : QString();
}

void JointSliderPanel::onCommandsApplied(const QStringList& names, const QList<float>& commands) {
  for (int i = 0; i < names.size() && i < commands.size(); ++i) {
    QSlider* slider = m_sliders.value(names[i]);
    if (!slider) continue;
    // The command is already applied: moving the slider must not ask again.
    const QSignalBlocker blocker(slider);
    slider->setValue(toSteps(names[i], commands[i]));
    showValue(names[i], commands[i]);
  }
}

void JointSliderPanel::showValue(const QString& name, float value) {
  QLabel* label = m_values.value(name);
  if (!label) return;
  if (m_prismatic.value(name)) {
    label->setText(QString("%1 mm").arg(static_cast<double>(value) * 1000.0, 0, 'f', 1));
  } else {
    label->setText(QString("%1°").arg(static_cast<double>(value) * 180.0 / M_PI, 0, 'f', 1));
  }
}

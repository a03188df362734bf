#pragma once
// The robots the viewer shows and the files they come from: loading at
// start, opening another file in their place, loading a changed file again
// (joint values kept for the joints that still exist), and placing robots
// without a <base> side by side. A file that fails to load leaves the world
// as it was; the failure is logged and announced.
#include <functional>
#include <vector>

#include <QObject>
#include <QString>
#include <QStringList>

#include <boost/shared_ptr.hpp>

namespace VX::NextGenView {
class Robot;
class World;
}  // namespace VX::NextGenView

class RobotFileWatcher;

class RobotDocuments : public QObject {
  Q_OBJECT

 public:
  // The gap left between robots placed side by side, as a share of the
  // wider one's width.
  static constexpr float a_sideBySideGap = 0.2f;

  RobotDocuments(boost::shared_ptr<VX::NextGenView::World> world, QObject* parent = nullptr);

  // Loads the file and adds its robot to the world.
  bool add(const QString& file, QString* error = nullptr);
  // Every robot of the world gives way to the file's robot.
  bool open(const QString& file, QString* error = nullptr);
  // Loads the file again and puts its robot in the place of the one it gave.
  bool reload(const QString& file, QString* error = nullptr);

  QStringList files() const;
  boost::shared_ptr<VX::NextGenView::Robot> robotOf(const QString& file) const;
  RobotFileWatcher* watcher() const { return m_watcher; }

  // Robots without a <base>, in the order they were added, are moved along
  // +Y so that each starts beyond the previous robots. `bounds` gives a
  // robot's extent along Y (min, max) in the world, false when unknown.
  void placeSideBySide(const std::function<bool(const boost::shared_ptr<VX::NextGenView::Robot>&, float*, float*)>& bounds);

 signals:
  // The world's robots changed; `reloaded` when the same file came back.
  void robotsReplaced(bool reloaded);
  void loadFailed(const QString& message);

 private:
  struct Document {
    QString file;
    boost::shared_ptr<VX::NextGenView::Robot> robot;
  };
  boost::shared_ptr<VX::NextGenView::Robot> load(const QString& file, QString* error);
  void watch(const Document& document);

  boost::shared_ptr<VX::NextGenView::World> m_world;
  std::vector<Document> m_documents;  // in the order they were added
  RobotFileWatcher* m_watcher;
};

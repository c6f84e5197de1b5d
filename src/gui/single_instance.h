#pragma once

#include <QObject>
#include <QStringList>

class QLocalServer;

namespace qb {

// One running instance per user and data directory: a second start hands its
// command line to the first and leaves.
class SingleInstance : public QObject {
    Q_OBJECT
  public:
    explicit SingleInstance(const QString& dataDir, QObject* parent = nullptr);
    // True when another instance took the arguments; this one should exit.
    bool handOver(const QStringList& arguments);
    // Starts listening for later starts.
    bool listen();

  signals:
    void anotherStart(const QStringList& arguments);

  private:
    QString name_;
    QLocalServer* server_ = nullptr;
};

}  // namespace qb

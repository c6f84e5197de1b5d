#include "gui/single_instance.h"

#include <unistd.h>
#include <QCryptographicHash>
#include <QDataStream>
#include <QDir>
#include <QLocalServer>
#include <QLocalSocket>

namespace qb {

SingleInstance::SingleInstance(const QString& dataDir, QObject* parent) : QObject(parent) {
    QByteArray dir = QDir(dataDir).absolutePath().toUtf8();
    name_ = QStringLiteral("quillarbor-%1-%2")
                .arg(getuid())
                .arg(QString::fromLatin1(
                    QCryptographicHash::hash(dir, QCryptographicHash::Sha1).toHex().left(12)));
}

bool SingleInstance::handOver(const QStringList& arguments) {
    QLocalSocket socket;
    socket.connectToServer(name_);
    if (!socket.waitForConnected(500)) return false;
    QByteArray data;
    QDataStream out(&data, QIODevice::WriteOnly);
    out << arguments;
    socket.write(data);
    socket.waitForBytesWritten(1000);
    socket.disconnectFromServer();
    return true;
}

bool SingleInstance::listen() {
    server_ = new QLocalServer(this);
    server_->setSocketOptions(QLocalServer::UserAccessOption);
    if (!server_->listen(name_)) {
        // A server left behind by a crashed instance: nobody answered above.
        QLocalServer::removeServer(name_);
        if (!server_->listen(name_)) return false;
    }
    connect(server_, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket* socket = server_->nextPendingConnection()) {
            connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
            connect(socket, &QLocalSocket::readyRead, this, [this, socket] {
                QDataStream in(socket->readAll());
                QStringList arguments;
                in >> arguments;
                emit anotherStart(arguments);
            });
        }
    });
    return true;
}

}  // namespace qb

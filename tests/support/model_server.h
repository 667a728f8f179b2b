#pragma once

#include "support/spawned_process.h"

#include <QByteArray>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QList>
#include <QTemporaryDir>
#include <QUrl>

/// A server of files over TLS on the loopback address, as a child process; model_server.py tells what a path answers.
/// Makes the environment of this process fit: the server's authority is trusted, and there is no proxy.
class ModelServer {
public:
    ModelServer()
    {
        for (const char *name :
             {"https_proxy", "HTTPS_PROXY", "all_proxy", "ALL_PROXY", "no_proxy", "NO_PROXY", "SSL_CERT_DIR"})
            qunsetenv(name);
        m_description = QJsonDocument::fromJson(QByteArray::fromStdString(m_process.readLine())).object();
        trustAuthority();
    }

    bool isRunning() const { return !m_description.isEmpty(); }
    QString authority() const { return m_description["authority"].toString(); }
    int port(const QString &name) const { return m_description[name].toInt(); }

    /// @param server which one, as model_server.py names them
    QUrl url(const QString &path, const QString &server = "good", const QString &host = "localhost") const
    {
        return QUrl(QString("https://%1:%2%3").arg(host).arg(port(server)).arg(path));
    }

    void trustAuthority() const { qputenv("SSL_CERT_FILE", authority().toUtf8()); }
    void useProxy() const { qputenv("https_proxy", "http://127.0.0.1:" + QByteArray::number(port("proxy"))); }

    struct Request {
        QString to; ///< "server", "plain" or "proxy"
        QString target;
        QString head;
    };

    /// What was asked so far.
    QList<Request> requests() const
    {
        QList<Request> requests;
        QFile log(m_folder.filePath("requests"));
        if (!log.open(QIODevice::ReadOnly))
            return requests;
        for (const QByteArray &line : log.readAll().split('\n')) {
            if (line.isEmpty())
                continue;
            const QJsonObject entry = QJsonDocument::fromJson(line).object();
            requests.append({entry["to"].toString(), entry["target"].toString(), entry["head"].toString()});
        }
        return requests;
    }

    /// The body of every answer, of that size.
    static QByteArray body(qsizetype size)
    {
        QByteArray bytes(size, Qt::Uninitialized);
        for (qsizetype i = 0; i < size; ++i) {
            const qsizetype place = i % 65536;
            bytes[i] = static_cast<char>((place * 31 + place / 256) & 255);
        }
        return bytes;
    }

private:
    QTemporaryDir m_folder;
    SpawnedProcess m_process{{"/usr/bin/python3", SORVANTA_TEST_MODEL_SERVER, m_folder.path().toStdString()}};
    QJsonObject m_description;
};

#pragma once
// A small writer of one-line JSON objects that keeps keys in the order they
// are written, as scripts reading the output expect to see them.
#include <QString>

#include "cli/cli_ui.h"

namespace sonorit::cli {

class JsonObject {
public:
    JsonObject& add(const char* key, const QString& value) { return raw(key, jsonString(value)); }
    JsonObject& add(const char* key, const char* value) { return add(key, QString::fromUtf8(value)); }
    JsonObject& add(const char* key, bool value) { return raw(key, value ? QStringLiteral("true") : QStringLiteral("false")); }
    JsonObject& add(const char* key, qint64 value) { return raw(key, QString::number(value)); }
    JsonObject& add(const char* key, int value) { return add(key, qint64(value)); }
    JsonObject& add(const char* key, const JsonObject& value) { return raw(key, value.text()); }
    JsonObject& raw(const char* key, const QString& json)
    {
        body_ += (body_.isEmpty() ? QString() : QStringLiteral(",")) + jsonString(QString::fromUtf8(key))
                 + QLatin1Char(':') + json;
        return *this;
    }
    QString text() const { return QLatin1Char('{') + body_ + QLatin1Char('}'); }

private:
    QString body_;
};

}  // namespace sonorit::cli

// EditorPreferences on an INI file in the configuration folder; config_int beside it.
#include "host/EditorPreferences.h"

#include <QDir>
#include <QSettings>
#include <QStandardPaths>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <memory>

#include "host/PersistableXY.h"

namespace {

QString qkey(const String& key) {
    // '/' and '\' would make groups of the INI file: keep the key flat.
    QString k = QString::fromUtf8(key.c_str());
    k.replace(QLatin1Char('/'), QLatin1Char('|'));
    k.replace(QLatin1Char('\\'), QLatin1Char('|'));
    return k;
}

QSettings& store() {
    static std::unique_ptr<QSettings> s;
    QString path = QString::fromUtf8(prefs().filePath().c_str());
    if (!s || s->fileName() != path)
        s = std::make_unique<QSettings>(path, QSettings::IniFormat);
    return *s;
}

bool readString(const String& key, QString& out) {
    QVariant v = store().value(qkey(key));
    if (!v.isValid())
        return false;
    out = v.toString();
    return true;
}

} // namespace

String EditorPreferences::configDir() {
    if (const char* env = std::getenv("NODEDESK_CONFIG_DIR"); env && *env)
        return String(env);
    QString base = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return String((base + QStringLiteral("/nodedesk")).toStdString());
}

String EditorPreferences::filePath() const {
    QDir().mkpath(QString::fromUtf8(configDir().c_str()));
    return configDir() + "/preferences.ini";
}

bool EditorPreferences::getPreference(const String& key, bool def) const {
    QString s;
    if (!readString(key, s))
        return def;
    if (s == QLatin1String("true") || s == QLatin1String("1"))
        return true;
    if (s == QLatin1String("false") || s == QLatin1String("0"))
        return false;
    return def;
}

int EditorPreferences::getPreference(const String& key, int def) const {
    QString s;
    bool ok = false;
    int v = readString(key, s) ? s.trimmed().toInt(&ok) : 0;
    return ok ? v : def;
}

double EditorPreferences::getPreference(const String& key, double def) const {
    QString s;
    bool ok = false;
    double v = readString(key, s) ? s.trimmed().toDouble(&ok) : 0.0;
    return ok && std::isfinite(v) ? v : def;
}

XY<int> EditorPreferences::getPreference(const String& key, const XY<int>& def) const {
    QString s;
    XY<int> v;
    if (readString(key, s) && PersistableXY::parse(String(s.toStdString()), v))
        return v;
    return def;
}

String EditorPreferences::getPreference(const String& key, const String& def) const {
    QString s;
    return readString(key, s) ? String(s.toStdString()) : def;
}

void EditorPreferences::setPreference(const String& key, bool v) {
    store().setValue(qkey(key), v ? QStringLiteral("true") : QStringLiteral("false"));
}

void EditorPreferences::setPreference(const String& key, int v) {
    store().setValue(qkey(key), QString::number(v));
}

void EditorPreferences::setPreference(const String& key, double v) {
    store().setValue(qkey(key), QString::number(v, 'g', 17));
}

void EditorPreferences::setPreference(const String& key, const XY<int>& v) {
    store().setValue(qkey(key), QString::fromUtf8(PersistableXY::toString(v).c_str()));
}

void EditorPreferences::setPreference(const String& key, const String& v) {
    store().setValue(qkey(key), QString::fromUtf8(v.c_str()));
}

bool EditorPreferences::hasPreference(const String& key) const {
    return store().contains(qkey(key));
}
void EditorPreferences::removePreference(const String& key) {
    store().remove(qkey(key));
}
void EditorPreferences::sync() {
    store().sync();
}

void EditorPreferences::reload() {
    store().sync();
}

EditorPreferences& prefs() {
    static EditorPreferences p;
    return p;
}

int config_int(const char* key, int def, int lo, int hi) {
    QString path = QString::fromUtf8((EditorPreferences::configDir() + "/config.ini").c_str());
    QSettings s(path, QSettings::IniFormat);
    bool ok = false;
    qlonglong v = s.value(QString::fromUtf8(key)).toString().trimmed().toLongLong(&ok);
    if (!ok)
        return def;
    return static_cast<int>(std::clamp<qlonglong>(v, lo, hi));
}

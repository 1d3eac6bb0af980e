// EditorPreferences: the user's preferences, kept between runs.
#pragma once

#include "host/LightweightString.h"
#include "host/XY.h"

// Kept in the file "preferences.ini" of the configuration folder (configDir). A get always
// returns the default given when the key is absent or its stored text doesn't read as the type.
// Points are stored in their "(x,y)" text form.
class EditorPreferences {
public:
    bool getPreference(const String& key, bool def) const;
    int getPreference(const String& key, int def) const;
    double getPreference(const String& key, double def) const;
    XY<int> getPreference(const String& key, const XY<int>& def) const;
    String getPreference(const String& key, const String& def) const;
    String getPreference(const String& key, const char* def) const { return getPreference(key, String(def)); }

    void setPreference(const String& key, bool v);
    void setPreference(const String& key, int v);
    void setPreference(const String& key, double v);
    void setPreference(const String& key, const XY<int>& v);
    void setPreference(const String& key, const String& v);
    void setPreference(const String& key, const char* v) { setPreference(key, String(v)); }

    bool hasPreference(const String& key) const;
    void removePreference(const String& key);
    // Writes pending changes to the file.
    void sync();
    // Forgets what was read, so that the next get reads the file again.
    void reload();
    String filePath() const;

    // The configuration folder: $NODEDESK_CONFIG_DIR if set, else the user's config folder.
    static String configDir();
};

EditorPreferences& prefs();
// An integer setting of the file "config.ini" in the configuration folder, clamped to
// [lo, hi]; def when absent or not an integer.
int config_int(const char* key, int def, int lo, int hi);

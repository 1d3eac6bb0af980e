// makeMessage: a non-modal message window when there is a display; the log always.
#include "host/UserMessages.h"

#include <QMessageBox>

#include "host/Log.h"
#include "host/ToolkitApp.h"
#include "refhost/toolkit/GlobImpl.h"

namespace {
std::vector<WString>& shown() {
    static std::vector<WString> s;
    return s;
}
} // namespace

void makeMessage(const UIString& text) {
    WString s = text.resolve();
    shown().push_back(s);
    Log("message: %s", toUtf8(s).c_str());
    if (toolkitIsHeadless())
        return;
    auto* box = new QMessageBox(QMessageBox::Information, QStringLiteral("nodedesk"), toolkit::toQString(s));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setModal(false);
    box->show();
}

const std::vector<WString>& messagesShown() {
    return shown();
}

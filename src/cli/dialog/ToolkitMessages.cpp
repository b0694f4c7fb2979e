#include "cli/dialog/ToolkitMessages.h"

#include "cli/TerminalConsole.h"

#include <QString>
#include <QtGlobal>

#include <cstddef>
#include <exception>
#include <mutex>
#include <set>
#include <string>

namespace halvane::cli {

namespace {

/// Texts that differ each time must not fill the memory.
constexpr std::size_t nMostTexts = 1000;

/// @returns whether nobody has told this text yet; of very many texts the later ones are not told.
bool isNew(const std::string& sText) {
    static std::mutex mutex;
    static std::set<std::string> told;
    const std::lock_guard lock(mutex);
    return told.size() < nMostTexts && told.insert(sText).second;
}

// The toolkit calls it on any of its threads. What it calls fatal it ends the program for afterwards.
void tell(QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& sMessage) {
    try {
        if (const std::string sText = sMessage.toStdString(); isNew(sText))
            TerminalConsole(false).note("halvane: warning: the toolkit reports: " + sText);
    } catch (const std::exception&) {
        // Out of memory: the message is lost. The caller is no code of ours.
    }
}

} // namespace

void tellToolkitMessages() {
    qInstallMessageHandler(&tell);
}

} // namespace halvane::cli

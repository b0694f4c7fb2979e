#include "cli/dialog/DialogProgram.h"
#include "cli/ProgramGuard.h"

#include "cli/DialogCommand.h"
#include "cli/Signals.h"
#include "cli/TerminalConsole.h"
#include "cli/dialog/DialogApplication.h"
#include "cli/dialog/Display.h"
#include "cli/dialog/ToolkitMessages.h"
#include "run/ExportInputs.h"
#include "telling/Interruption.h"
#include "telling/StandardStreams.h"
#include "telling/dialog/DialogLog.h"
#include "telling/dialog/DialogWatch.h"
#include "ui/qt/FormExporterWindow.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <QApplication>
#include <QTimer>

#include <clocale>
#include <cstdio>
#include <exception>
#include <limits>
#include <memory>

namespace halvane::cli {

namespace {

constexpr int lInterruptionLooks = 200; // milliseconds between two looks

ExportOptions options(const ExportInputs& inputs) {
    ExportOptions options;
    options.lItemLimit = std::numeric_limits<std::int64_t>::max();
    options.bIgnoreComments = true;
    options.durability = io::Durability::OnDisk;
    options.pSecondEdition = &inputs.secondEdition.edition();
    return options;
}

/// Shows the form and returns once it is closed.
void showForm(const ExportInputs& inputs) {
    ui::qt::FormExporterWindow window;
    const CommandLineMap map(inputs);
    DialogWatch watch(map, window.strip());
    ui::FormExporter form(window, options(inputs), &watch);
    window.present(form, std::make_shared<DialogApplication>(inputs));
    QTimer interruptions;
    QObject::connect(&interruptions, &QTimer::timeout, &window, [&window] {
        if (!interruptionRequested())
            return;
        // What asks the person something goes first: the form waits for it.
        QWidget* pAsking = QApplication::activeModalWidget();
        (pAsking != nullptr ? pAsking : &window)->close();
    });
    interruptions.start(lInterruptionLooks);
    QApplication::exec();
}

ExitCode refuse(const Console& console, const std::vector<std::string>& problems) {
    for (const auto& sProblem : problems)
        console.failure("halvane: " + sProblem);
    return ExitCode::InvalidInput;
}

ExitCode run(const host::DataHosts& hosts, int lArguments, char** aArguments) {
    DialogCommand command;
    CLI::App app(command.description(), "halvane dialog");
    command.declare(app);
    try {
        app.parse(lArguments, aArguments);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? ExitCode::Written : ExitCode::InvalidInput;
    }
    const TerminalConsole console(false);
    tellToolkitMessages();
    if (!hasDisplay())
        return refuse(console, {"there is no display to show the dialog on; set DISPLAY"});
    if (!displayAnswers(lArguments, aArguments))
        return refuse(console, {"the display does not answer; check DISPLAY"});
    ExportInputs inputs(hosts);
    if (const auto problems = openApplication(command.arguments(), inputs); !problems.empty())
        return refuse(console, problems);
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    // Later versions scale by themselves.
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
#endif
    const QApplication application(lArguments, aArguments);
    // Libraries written in C would print decimals with the person's comma.
    std::setlocale(LC_NUMERIC, "C");
    hosts.endWhen(&DialogLog::endsNow);
    showForm(inputs);
    return ExitCode::Written;
}

} // namespace

int runDialogProgram(const host::DataHosts& hosts, int lArguments, char** aArguments) noexcept {
    fillStandardStreams();
    return runGuarded([&] {
        prepareSignals();
        return run(hosts, lArguments, aArguments);
    });
}

} // namespace halvane::cli

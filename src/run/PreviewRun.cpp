#include "run/PreviewRun.h"

#include "run/preview/PreviewTrace.h"

namespace halvane {

namespace {

class TextSink final : public io::ByteSink {
public:
    void write(std::string_view sBytes) override { sText_ += sBytes; }
    [[nodiscard]] const std::string& text() const noexcept { return sText_; }

private:
    std::string sText_;
};

} // namespace

PreviewOutcome runPreview(const ExportArguments& given, const RunSurroundings& around,
                          const PreviewForm& form) {
    ExportArguments arguments = given;
    arguments.bWritesStandardOutput = true;
    arguments.sOutput = sStandardOutput;
    TextSink document;
    PreviewTrace trace(form.nItems, form.bExplains);
    RunSurroundings surroundings = around;
    surroundings.pStandardOutput = &document;
    surroundings.pTrace = &trace;
    ExportRun run(arguments, surroundings);
    run.run();
    PreviewOutcome outcome{run.facts().exitCode, {}};
    if (outcome.exitCode == ExitCode::Written || outcome.exitCode == ExitCode::WrittenIncomplete)
        outcome.sPage = previewPage(document.text(), trace.notes(), form);
    return outcome;
}

} // namespace halvane

#include "ui/qt/RememberedBoxes.h"

#include "ui/FormLayout.h"
#include "ui/qt/Text.h"

#include <QSettings>

namespace halvane::ui::qt {

namespace {

constexpr const char* sOrganisation = "Halvane";
constexpr const char* sProgram = "dialog";

} // namespace

void rememberBoxes(const FormView& view) {
    QSettings settings(sOrganisation, sProgram);
    for (const FormRow& row : formRows()) {
        if (isForgotten(row.box, view.text(row.box)))
            settings.remove(toQt(row.sBox));
        else
            settings.setValue(toQt(row.sBox), toQt(view.text(row.box)));
    }
}

void recallBoxes(FormView& view) {
    const QSettings settings(sOrganisation, sProgram);
    for (const FormRow& row : formRows())
        if (settings.contains(toQt(row.sBox)))
            view.setText(row.box, fromQt(settings.value(toQt(row.sBox)).toString()));
}

} // namespace halvane::ui::qt

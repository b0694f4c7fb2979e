// The widgets of the window, in process and without a screen.

#include "ToolkitTest.h"

#include "ui/qt/FormExporterWindow.h"

#include "engine/ExportState.h"
#include "support/TemporaryFolder.h"
#include "support/TownWorld.h"
#include "ui/FormLayout.h"
#include "ui/qt/BrowseDialog.h"

#include <gmock/gmock.h>

#include <QApplication>
#include <QDir>
#include <QKeyEvent>
#include <QSettings>
#include <QTimer>

#include <functional>
#include <memory>
#include <string>

namespace halvane::test {
namespace {

using ui::Box;

class LookingApplication : public ui::HostApplication {
public:
    explicit LookingApplication(const TownWorld& world) : world_(world) {}

    [[nodiscard]] host::GisMapDocumentPtr mapDocument() override {
        fnAsked();
        return world_.pMapDocument;
    }
    [[nodiscard]] host::GisHostPtr objects() override { return world_.pHost; }

    std::function<void()> fnAsked = [] {};

private:
    const TownWorld& world_;
};

class Window : public ToolkitTest {
protected:
    Window() {
        moduleState().release();
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                           QString::fromStdString(settings.path().string()));
        window.present(form, pApplication);
    }
    ~Window() override { moduleState() = ExportState(); }

    void fill() {
        window.setText(Box::Text1, folder.write("control.xml", "<a Name='Out'><b Name='T'/></a>"));
        window.setText(Box::Text2, folder.path().string());
        window.setText(Box::Text3, "out.xml");
    }
    template<class Widget>
    Widget& child(const char* sName) {
        auto* pChild = window.findChild<Widget*>(QString::fromLatin1(sName));
        if (pChild == nullptr)
            throw std::runtime_error(std::string("no ") + sName);
        return *pChild;
    }

    TownWorld world;
    TemporaryFolder folder;
    TemporaryFolder settings;
    std::shared_ptr<LookingApplication> pApplication = std::make_shared<LookingApplication>(world);
    ui::Pacing::Time now;
    ui::qt::FormExporterWindow window{nullptr, ui::Pacing([this] { return now; })};
    ui::FormExporter form{window};
};

TEST_F(Window, NamesItsControls) {
    EXPECT_EQ(window.objectName(), "FormExporter");
    EXPECT_EQ(window.windowTitle(), "Export to XML");
    for (int n = 1; n <= 5; ++n) {
        auto& label = child<QLabel>(("Label" + std::to_string(n)).c_str());
        auto& box = child<QLineEdit>(("Text" + std::to_string(n)).c_str());
        EXPECT_EQ(label.buddy(), &box) << n;
        EXPECT_EQ(label.text().remove('&'), box.accessibleName()) << n;
    }
    child<QWidget>("Strip");
    child<QLabel>("OutcomeKind");
    child<QPlainTextEdit>("Outcome");
    EXPECT_EQ(child<QPushButton>("OpenFolder").text(), "Op&en Folder");
    EXPECT_EQ(child<QPushButton>("CancelExport").text(), "Cance&l Export");
    EXPECT_EQ(child<QPushButton>("Command1").text(), "OK");
    EXPECT_TRUE(child<QPushButton>("Command1").isDefault());
    EXPECT_EQ(child<QPushButton>("Command2").text(), "Cancel");
    for (const char* sName : {"Command3", "Command4", "Command5"}) {
        EXPECT_EQ(child<QPushButton>(sName).text(), "") << "a picture instead";
        EXPECT_FALSE(child<QPushButton>(sName).icon().isNull()) << sName;
        EXPECT_FALSE(child<QPushButton>(sName).accessibleName().isEmpty()) << sName;
    }
}

TEST_F(Window, LetsEachBoxBeReadAndSet) {
    for (const auto& row : ui::formRows()) {
        const std::string sText = "Straße " + std::string(row.sBox);
        window.setText(row.box, sText);
        EXPECT_EQ(window.text(row.box), sText);
        EXPECT_EQ(child<QLineEdit>(std::string(row.sBox).c_str()).text().toStdString(), sText);
    }
}

TEST_F(Window, WaitsWithTheHourglassAndDisabledControlsWhileItExports) {
    fill();
    int lAsked = 0;
    pApplication->fnAsked = [&] {
        ++lAsked;
        ASSERT_NE(QGuiApplication::overrideCursor(), nullptr);
        EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
        EXPECT_FALSE(child<QLineEdit>("Text1").isEnabled());
        EXPECT_FALSE(child<QPushButton>("Command1").isEnabled());
    };
    child<QPushButton>("Command1").click();
    EXPECT_EQ(lAsked, 1);
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
    EXPECT_TRUE(child<QLineEdit>("Text1").isEnabled());
    EXPECT_TRUE(folder.read("out.xml").has_value());
    EXPECT_TRUE(window.isVisible());
}

TEST_F(Window, TakesTheHourglassAwayWhenTheApplicationFails) {
    fill();
    pApplication->fnAsked = [] { throw Failure(FailureNumber::InternalError, "gone"); };
    child<QPushButton>("Command1").click();
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
    EXPECT_TRUE(child<QPushButton>("Command1").isEnabled());
}

TEST_F(Window, TakesEnterForOkOnTheButtonsThatBrowse) {
    for (const char* sName : {"Command3", "Command4", "Command5"})
        EXPECT_FALSE(child<QPushButton>(sName).autoDefault()) << sName;
    fill();
    auto& browse = child<QPushButton>("Command3");
    browse.setFocus();
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QCoreApplication::sendEvent(&browse, &enter);
    EXPECT_TRUE(folder.read("out.xml").has_value());
}

TEST_F(Window, ForgetsBoxesThatWereRefused) {
    fill();
    child<QPushButton>("Command1").click();
    window.setText(Box::Text1, "elsewhere");
    window.setText(Box::Text3, "sub\\out");
    QTimer answer;
    QObject::connect(&answer, &QTimer::timeout, [] {
        if (auto* pBox = QApplication::activeModalWidget(); pBox != nullptr)
            pBox->close();
    });
    answer.start(1);
    child<QPushButton>("Command1").click();
    EXPECT_EQ(window.text(Box::Text3), "");
    ui::qt::FormExporterWindow second;
    ui::FormExporter other(second);
    second.present(other, pApplication);
    EXPECT_EQ(second.text(Box::Text1), folder.file("control.xml"));
    EXPECT_EQ(second.text(Box::Text3), "out.xml");
}

TEST_F(Window, BrowsesFromTheFolderHoweverItIsTyped) {
    QString sTyped = " " + QString::fromStdString(folder.path().string()) + " ";
    sTyped.replace('/', '\\');
    const ui::qt::BrowseDialog dialog(nullptr, "Browse", sTyped);
    EXPECT_EQ(dialog.item().sPath, folder.path().string());
    EXPECT_TRUE(dialog.item().bFolder);
}

TEST_F(Window, BrowsesFromHomeWhereThereIsNoFolder) {
    for (const char* sStart : {"", " ", "/no/such/folder"})
        EXPECT_EQ(ui::qt::BrowseDialog(nullptr, "Browse", sStart).item().sPath,
                  QDir::homePath().toStdString());
}

TEST_F(Window, TakesTheFullPathOfTheFolderThatIsTyped) {
    ui::qt::BrowseDialog dialog(nullptr, "Browse", "");
    auto* pPath = dialog.findChild<QLineEdit*>("Path");
    ASSERT_NE(pPath, nullptr);
    pPath->setText("  .. ");
    EXPECT_TRUE(dialog.item().bFolder);
    EXPECT_EQ(dialog.item().sPath, QDir::currentPath().section('/', 0, -2).toStdString());
    pPath->setText("nowhere");
    EXPECT_FALSE(dialog.item().bFolder);
    EXPECT_EQ(dialog.item().sPath, (QDir::currentPath() + "/nowhere").toStdString());
}

TEST_F(Window, StaysOpenWhenItIsClosedAmidAnExport) {
    fill();
    pApplication->fnAsked = [&] { EXPECT_FALSE(window.close()); };
    child<QPushButton>("Command1").click();
    EXPECT_TRUE(window.isVisible());
    EXPECT_TRUE(window.close());
    EXPECT_FALSE(window.isVisible());
}

TEST_F(Window, TakesAnEscapeThatIsHeldDownForOne) {
    const auto pressEscape = [&](bool bRepeats) {
        QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier, QString(), bRepeats);
        QCoreApplication::sendEvent(&window, &escape);
    };
    window.show();
    pressEscape(true);
    EXPECT_TRUE(window.isVisible());
    pressEscape(false);
    EXPECT_FALSE(window.isVisible());
}

TEST_F(Window, StaysOpenOnAnEscapeThatComesTooLateForTheExport) {
    const auto pressEscape = [&] {
        QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QCoreApplication::sendEvent(&window, &escape);
    };
    window.strip().begin();
    window.strip().show({ui::ExportOutcome::Kind::Written, "Wrote", {}, ""});
    now += std::chrono::milliseconds(399);
    pressEscape();
    EXPECT_TRUE(window.isVisible());
    now += std::chrono::milliseconds(1);
    pressEscape();
    EXPECT_FALSE(window.isVisible());
}

TEST_F(Window, HasItsNodePathAgainWhereItWasEmptied) {
    for (const char* sPath : {"//q", " "}) {
        fill();
        window.setText(Box::Text5, sPath);
        child<QPushButton>("Command1").click();
    }
    ui::qt::FormExporterWindow second;
    ui::FormExporter other(second);
    second.present(other, pApplication);
    EXPECT_EQ(second.text(Box::Text5), "//VandraConfig/TemplateView/QvLayers/QvLayer");
}

TEST_F(Window, FillsTheBoxesAsTheyWereAtTheLastOk) {
    fill();
    child<QPushButton>("Command1").click();
    window.setText(Box::Text3, "not remembered");
    ui::qt::FormExporterWindow second;
    ui::FormExporter other(second);
    second.present(other, pApplication);
    EXPECT_EQ(second.text(Box::Text1), folder.file("control.xml"));
    EXPECT_EQ(second.text(Box::Text3), "out.xml");
    EXPECT_EQ(second.text(Box::Text5), "//VandraConfig/TemplateView/QvLayers/QvLayer");
}

} // namespace
} // namespace halvane::test

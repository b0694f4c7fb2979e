// Cancel Export while a database computes what never comes to an end.

#include "ToolkitTest.h"

#include "cli/dialog/DialogApplication.h"
#include "engine/ExportState.h"
#include "host/gdal/GdalHost.h"
#include "support/TemporaryFolder.h"
#include "telling/dialog/DialogLog.h"
#include "telling/dialog/DialogWatch.h"
#include "ui/qt/FormExporterWindow.h"

#include <gmock/gmock.h>
#include <ogrsf_frmts.h>

#include <QPlainTextEdit>
#include <QPushButton>
#include <QSettings>
#include <QTimer>

#include <string>

namespace halvane::test {
namespace {

using ui::Box;

class Cancelling : public ToolkitTest, public ::testing::WithParamInterface<const char*> {
protected:
    Cancelling() {
        moduleState().release();
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                           QString::fromStdString(settings.path().string()));
        makeData();
        ExportArguments arguments;
        arguments.sMap = sData;
        EXPECT_THAT(openApplication(arguments, inputs), ::testing::IsEmpty());
        host::gdal::GdalHost::endWhen(&DialogLog::endsNow);
        window.present(form, std::make_shared<cli::DialogApplication>(inputs));
    }
    ~Cancelling() override {
        moduleState() = ExportState();
        host::gdal::GdalHost::endWhen(nullptr);
    }

    void makeData() {
        GDALAllRegister();
        GDALDriver* pDriver = GetGDALDriverManager()->GetDriverByName(GetParam());
        const GDALDatasetUniquePtr pData(pDriver->Create(sData.c_str(), 0, 0, 0, GDT_Unknown, nullptr));
        OGRLayer* pLayer = pData->CreateLayer("towns", nullptr, wkbNone);
        OGRFieldDefn name("name", OFTString);
        EXPECT_EQ(pLayer->CreateField(&name), OGRERR_NONE);
        const std::string sEndless =
            " AS WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT i AS name FROM n ";
        for (const auto& [sName, sWhere] : {std::pair{"none", "WHERE i < 0"}, {"some", "WHERE i <= 5000"}}) {
            run(*pData, "CREATE VIEW " + std::string(sName) + sEndless + sWhere);
            if (GetParam() == std::string("GPKG"))
                run(*pData, "INSERT INTO gpkg_contents (table_name, identifier, data_type) VALUES ('" +
                                std::string(sName) + "', '" + sName + "', 'attributes')");
        }
    }

    static void run(GDALDataset& data, const std::string& sSql) {
        data.ReleaseResultSet(data.ExecuteSQL(sSql.c_str(), nullptr, nullptr));
    }

    /// Presses OK, and Cancel Export as soon as the window offers it. @returns what the strip tells then.
    std::string cancelledExportOf(const std::string& sTable) {
        window.setText(Box::Text1, folder.write("control.xml", R"(<T Name="T"><A Name="A" DataSource="Table"
 Identity="TableName" IdentityValue=")" + sTable + R"("><R Name="R" DataSource="Record" Entries="Multiple">
 <F Name="name" IdentityValue="name"/></R></A></T>)"));
        window.setText(Box::Text2, folder.path().string());
        window.setText(Box::Text3, "out.xml");
        auto& cancel = *window.findChild<QPushButton*>("CancelExport");
        QTimer person;
        QObject::connect(&person, &QTimer::timeout, [&] {
            ++lTurns;
            if (cancel.isVisible() && cancel.isEnabled())
                cancel.click();
        });
        person.start(1);
        window.findChild<QPushButton*>("Command1")->click();
        return window.findChild<QPlainTextEdit*>("Outcome")->toPlainText().toStdString();
    }

    TemporaryFolder folder;
    TemporaryFolder settings;
    std::string sData = folder.file(GetParam() == std::string("GPKG") ? "data.gpkg" : "data.sqlite");
    ExportInputs inputs{host::gdal::dataHosts()};
    ui::qt::FormExporterWindow window;
    cli::CommandLineMap map{inputs};
    DialogWatch watch{map, window.strip()};
    ui::FormExporter form{window, {.bIgnoreComments = true}, &watch};
    int lTurns = 0; ///< how often the window served its timers while it exported
};

INSTANTIATE_TEST_SUITE_P(Drivers, Cancelling, ::testing::Values("GPKG", "SQLite"),
                         [](const auto& test) { return std::string(test.param); });

TEST_P(Cancelling, EndsAViewThatNeverYieldsARow) {
    folder.write("out.xml", "<Old/>");
    EXPECT_THAT(cancelledExportOf("none"), ::testing::HasSubstr("out.xml\": cancelled"));
    EXPECT_GT(lTurns, 2) << "the window answers meanwhile";
    EXPECT_EQ(folder.read("out.xml"), "<Old/>");
}

TEST_P(Cancelling, EndsAViewThatNeverEndsBehindItsRows) {
    EXPECT_THAT(cancelledExportOf("some"), ::testing::HasSubstr("out.xml\": cancelled"));
    EXPECT_GT(lTurns, 2) << "the window answers meanwhile";
    EXPECT_EQ(folder.read("out.xml"), std::nullopt);
}

} // namespace
} // namespace halvane::test

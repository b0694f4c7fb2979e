// Choosing files and folders by the system's dialogs.

#include "base/Text.h"
#include "base/com/Bstr.h"
#include "ui/win32/ControlIds.h"
#include "ui/win32/Controls.h"
#include "ui/win32/DialogTest.h"
#include "ui/win32/TypedPath.h"

#include <dlgs.h>

namespace halvane::test {
namespace {

using namespace ui::win32;
using ui::Box;

TEST(SystemFilter, SeparatesAndEndsWithNulls) {
    using namespace std::string_literals;
    EXPECT_EQ(systemFilter("XML Files (.xml)|*.xml"), L"XML Files (.xml)\0*.xml\0\0"s);
    EXPECT_EQ(systemFilter("A|*.a;*.b|B|*.c"), L"A\0*.a;*.b\0B\0*.c\0\0"s);
}

TEST(SystemFilter, KeepsNoFileBackWhereThereIsNoPattern) {
    using namespace std::string_literals;
    EXPECT_EQ(systemFilter("XML Files (.xml)"), L"XML Files (.xml)\0*.*\0\0"s);
}

TEST(TypedFolder, IsTheFolderOrTheOneOfTheFile) {
    const TemporaryFolder folder;
    const std::string sFile = folder.write("a.xml", "");
    const std::wstring sFolder = folder.path().wstring();
    EXPECT_EQ(folderOfTyped(" " + folder.path().string() + " "), sFolder);
    EXPECT_EQ(folderOfTyped(folder.path().string() + "\\"), sFolder);
    EXPECT_EQ(folderOfTyped(replaceAll(folder.path().string(), "\\", "/")), sFolder);
    EXPECT_EQ(folderOfTyped(sFile), sFolder);
    EXPECT_EQ(folderOfTyped("C:\\no\\such\\folder"), L"");
    EXPECT_EQ(folderOfTyped("  "), L"");
}

class Choosing : public DialogTest {
protected:
    /// Presses a browse button, has the dialog answered, and tells what it looked like.
    bool choose(int lBrowser, const std::function<bool(HWND)>& fnAnswer) {
        const Answer answer(window.handle(), fnAnswer);
        click(lBrowser);
        return answer.given();
    }
    /// Types into the file dialog and presses a button of it.
    std::function<bool(HWND)> typing(std::wstring sPath, int lButton = IDOK) {
        return [this, sPath, lButton](HWND hDialog) {
            HWND hName =
                GetDlgItem(hDialog, edt1) != nullptr ? GetDlgItem(hDialog, edt1) : GetDlgItem(hDialog, cmb13);
            if (hName == nullptr)
                return false;
            sCaption_ = textOfControl(hDialog);
            sKind_ = textOfControl(GetDlgItem(hDialog, cmb1));
            lKinds_ = static_cast<int>(SendDlgItemMessageW(hDialog, cmb1, CB_GETCOUNT, 0, 0));
            SetWindowTextW(hName, sPath.c_str());
            PostMessageW(hDialog, WM_COMMAND, static_cast<WPARAM>(lButton), 0);
            return true;
        };
    }

    /// A file whose name may hold any letters.
    std::filesystem::path written(const wchar_t* sName) const {
        std::filesystem::rename(folder.write("new", "<a/>"), folder.path() / sName);
        return folder.path() / sName;
    }

    std::wstring sCaption_;
    std::wstring sKind_;
    int lKinds_ = 0;
};

TEST_F(Choosing, PutsTheControlFileIntoItsBox) {
    const auto file = written(L"Grundriß.xml");
    ASSERT_TRUE(choose(lCommand3, typing(file.wstring())));
    EXPECT_EQ(window.text(Box::Text1), com::utf8Of(file.wstring()));
    EXPECT_EQ(sKind_, L"XML Files (.xml)");
    EXPECT_EQ(lKinds_, 1);
}

TEST_F(Choosing, PutsTheOptionalDocumentIntoItsBox) {
    const std::string sFile = folder.write("tags.txt", "<a/>");
    ASSERT_TRUE(choose(lCommand5, typing(std::filesystem::path(sFile).wstring())));
    EXPECT_EQ(window.text(Box::Text4), sFile);
    EXPECT_EQ(sKind_, L"XML Files (.xml)");
    EXPECT_EQ(lKinds_, 1);
}

TEST_F(Choosing, LeavesTheBoxAsItIsWithoutAChoice) {
    type(lText1, L"before");
    const std::string sFile = folder.write("a.xml", "<a/>");
    ASSERT_TRUE(choose(lCommand3, typing(std::filesystem::path(sFile).wstring(), IDCANCEL)));
    EXPECT_EQ(window.text(Box::Text1), "before");
}

TEST_F(Choosing, LeavesTheProgramsOwnFolderAlone) {
    const auto before = std::filesystem::current_path();
    const std::string sFile = folder.write("a.xml", "<a/>");
    ASSERT_TRUE(choose(lCommand3, typing(std::filesystem::path(sFile).wstring())));
    EXPECT_EQ(std::filesystem::current_path(), before);
}

TEST_F(Choosing, OpensTheFileDialogWhereItWasLeft) {
    const std::string sFirst = folder.write("first.xml", "<a/>");
    const std::string sSecond = folder.write("second.xml", "<a/>");
    ASSERT_TRUE(choose(lCommand3, typing(std::filesystem::path(sFirst).wstring())));
    ASSERT_TRUE(choose(lCommand5, typing(L"second.xml")));
    EXPECT_EQ(window.text(Box::Text4), sSecond);
}

TEST_F(Choosing, BeginsInTheFolderOfTheBoxThatIsTyped) {
    folder.write("here.xml", "<a/>");
    window.setText(Box::Text1, " " + folder.file("nothing.xml"));
    ASSERT_TRUE(choose(lCommand3, typing(L"here.xml")));
    EXPECT_EQ(window.text(Box::Text1), folder.file("here.xml"));
}

/// Two folders near the root: Wine's tree does not lead to those of temporary files.
class ChoosingAFolder : public Choosing {
protected:
    ChoosingAFolder() { std::filesystem::create_directories(inner); }
    ~ChoosingAFolder() override { std::filesystem::remove_all(outer); }

    const std::filesystem::path outer =
        std::filesystem::path(L"C:\\halvane-test-" + std::to_wstring(GetCurrentProcessId()));
    const std::filesystem::path inner = outer / "inner";
};

TEST_F(ChoosingAFolder, PutsItIntoItsBox) {
    ASSERT_TRUE(choose(lCommand4, typing(inner.wstring())));
    EXPECT_EQ(window.text(Box::Text2), inner.string());
    EXPECT_EQ(sCaption_, L"Select Output Path");
}

TEST_F(ChoosingAFolder, BeginsInTheFolderThatIsTyped) {
    window.setText(Box::Text2, " " + replaceAll(outer.string(), "\\", "/") + "/ ");
    ASSERT_TRUE(choose(lCommand4, typing(L"inner")));
    EXPECT_EQ(window.text(Box::Text2), inner.string());
}

TEST_F(ChoosingAFolder, LeavesTheBoxAsItIsWithoutAChoice) {
    type(lText1 + 1, L"before");
    ASSERT_TRUE(choose(lCommand4, typing(inner.wstring(), IDCANCEL)));
    EXPECT_EQ(window.text(Box::Text2), "before");
}

} // namespace
} // namespace halvane::test

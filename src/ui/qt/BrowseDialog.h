#pragma once

#include "ui/FormView.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QFileSystemModel>
#include <QLabel>
#include <QLineEdit>
#include <QTreeView>
#include <QVBoxLayout>

namespace halvane::ui::qt {

/// Lets a person choose an item among the folders and files of this machine, by the tree or by typing.
class BrowseDialog : public QDialog {
public:
    /// @param sStart the folder to begin in, as a person typed it; what is none counts as the home folder.
    BrowseDialog(QWidget* pParent, const QString& sTitle, const QString& sStart);

    /// What was chosen, by its full path; valid once the dialog was accepted.
    [[nodiscard]] BrowsedItem item() const;

private:
    void buildTree();
    void buildLayout();
    void goTo(const QString& sFolder);
    void showCurrent();

    QFileSystemModel model_;
    QLabel treeLabel_{this};
    QTreeView tree_{this};
    QLabel pathLabel_{this};
    QLineEdit path_{this};
    QDialogButtonBox buttons_{QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this};
    QVBoxLayout layout_{this};
};

} // namespace halvane::ui::qt

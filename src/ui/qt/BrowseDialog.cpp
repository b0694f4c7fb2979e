#include "ui/qt/BrowseDialog.h"

#include "ui/qt/Paths.h"
#include "ui/qt/Text.h"

#include <QDir>
#include <QFileInfo>
#include <QHeaderView>
#include <QPushButton>

namespace halvane::ui::qt {

namespace {

constexpr int lWidth = 70;  // average characters
constexpr int lHeight = 22; // lines

} // namespace

BrowseDialog::BrowseDialog(QWidget* pParent, const QString& sTitle, const QString& sStart)
    : QDialog(pParent) {
    setObjectName(QStringLiteral("BrowseDialog"));
    setWindowTitle(sTitle);
    buildTree();
    buildLayout();
    const QFileInfo start(typedPath(sStart));
    goTo(start.isDir() ? start.absoluteFilePath() : QDir::homePath());
    path_.setFocus();
}

void BrowseDialog::buildTree() {
    model_.setFilter(QDir::AllEntries | QDir::NoDotAndDotDot);
    model_.setRootPath(QDir::rootPath());
    tree_.setModel(&model_);
    tree_.setObjectName(QStringLiteral("Tree"));
    tree_.setAccessibleName(QStringLiteral("Folders and files"));
    tree_.setUniformRowHeights(true);
    tree_.setTabKeyNavigation(false);
    tree_.header()->setSectionResizeMode(0, QHeaderView::Stretch);
    for (int lColumn = 1; lColumn < model_.columnCount(); ++lColumn)
        tree_.hideColumn(lColumn);
    connect(tree_.selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& current) {
                path_.setText(QDir::toNativeSeparators(model_.filePath(current)));
            });
    // Folders are read in the background; only then is there something to scroll to.
    connect(&model_, &QFileSystemModel::directoryLoaded, this, [this] { showCurrent(); });
}

void BrowseDialog::buildLayout() {
    treeLabel_.setText(QStringLiteral("&Folders and files"));
    treeLabel_.setBuddy(&tree_);
    pathLabel_.setText(QStringLiteral("&Path"));
    pathLabel_.setBuddy(&path_);
    path_.setObjectName(QStringLiteral("Path"));
    path_.setAccessibleName(QStringLiteral("Path"));
    layout_.addWidget(&treeLabel_);
    layout_.addWidget(&tree_, 1);
    layout_.addWidget(&pathLabel_);
    layout_.addWidget(&path_);
    layout_.addWidget(&buttons_);
    const QFontMetrics metrics = fontMetrics();
    resize(metrics.averageCharWidth() * lWidth, metrics.lineSpacing() * lHeight);
    connect(&buttons_, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(&buttons_, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

void BrowseDialog::goTo(const QString& sFolder) {
    const QModelIndex index = model_.index(sFolder);
    tree_.setCurrentIndex(index);
    tree_.expand(index);
    path_.setText(QDir::toNativeSeparators(sFolder));
    path_.selectAll();
}

void BrowseDialog::showCurrent() {
    const QModelIndex current = tree_.currentIndex();
    for (QModelIndex index = current.parent(); index.isValid(); index = index.parent())
        tree_.expand(index);
    tree_.scrollTo(current, QAbstractItemView::PositionAtCenter);
}

BrowsedItem BrowseDialog::item() const {
    const QFileInfo info(typedPath(path_.text()));
    return {fromQt(QDir::toNativeSeparators(info.absoluteFilePath())), info.isDir()};
}

} // namespace halvane::ui::qt

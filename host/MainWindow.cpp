#include "host/MainWindow.h"
#include "frames/core/AbsEditFrame.h"
#include "frames/core/ConfigItem.h"
#include "frames/core/Guard.h"
#include "frames/core/Registry.h"
#include "frames/core/WaitCursor.h"
#include "host/CardForms.h"
#include "host/ClientForms.h"
#include "host/CrmForms.h"
#include "host/CrmReportForm.h"
#include "host/DocumentForms.h"
#include "host/FilterPanel.h"
#include "host/HostImpl.h"
#include "host/MassEdit.h"
#include "host/ReferenceForms.h"
#include "host/ReportSettingsForm.h"
#include "host/Usability.h"
#include "platform/db/Database.h"
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QScrollArea>
#include <QSplitter>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace workbench {

MainWindow::MainWindow(HostImpl* host, const frames::Registry* registry, QWidget* parent)
    : QMainWindow(parent), host_(host), registry_(registry) {
    setObjectName(QStringLiteral("MainWindow"));
    setWindowTitle(QStringLiteral("Frames — рабочее место"));
    resize(1000, 640);
    hosted_ = new HostedFrames(this, [this](const QString& name) {
        return host_->LayoutRoot()->ItemByName(QStringLiteral("Browser"))->ItemByName(name);
    });

    tree_ = new QTreeWidget(this);
    tree_->setObjectName(QStringLiteral("tvFrames"));
    tree_->setColumnCount(2);
    tree_->setHeaderLabels({QStringLiteral("Фрейм"), QStringLiteral("Класс")});
    tree_->setRootIsDecorated(true);
    for (const QString& family : registry_->families()) {
        auto* familyItem = new QTreeWidgetItem(tree_, {frames::Registry::familyCaption(family)});
        familyItem->setFirstColumnSpanned(true);
        familyItem->setToolTip(0, family);
        for (const QString& cls : registry_->classNames(family)) {
            QString caption = frames::FormLoader::caption(cls);
            if (caption.isEmpty()) caption = cls;
            auto* item = new QTreeWidgetItem(familyItem, {caption, cls});
            item->setData(0, Qt::UserRole, cls);
            item->setToolTip(0, caption + QStringLiteral(" — ") + cls);
        }
        familyItem->setExpanded(true);
    }
    tree_->sortItems(0, Qt::AscendingOrder);
    tree_->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    tree_->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    tree_->header()->setStretchLastSection(false);

    search_ = new QLineEdit(this);
    search_->setObjectName(QStringLiteral("edFrameSearch"));
    search_->setPlaceholderText(QStringLiteral("Поиск по названию или классу"));
    search_->setClearButtonEnabled(true);
    connect(search_, &QLineEdit::textChanged, this, [this](const QString& text) { filterFrames(text); });
    auto* browser = new QWidget(this);
    auto* browserLayout = new QVBoxLayout(browser);
    browserLayout->setContentsMargins(0, 0, 0, 0);
    browserLayout->addWidget(search_);
    browserLayout->addWidget(tree_);

    panel_ = new QWidget;
    panel_->setObjectName(QStringLiteral("pnFrame"));
    auto* panelLayout = new QVBoxLayout(panel_);
    info_ = new QLabel(
        QStringLiteral("Выберите фрейм слева: он будет показан здесь сам по себе, без формы-владельца."));
    info_->setWordWrap(true);
    panelLayout->addWidget(info_);
    btBound_ = new QPushButton(QStringLiteral("На форме редактирования…"), panel_);
    btBound_->setObjectName(QStringLiteral("btBound"));
    btBound_->setToolTip(
        QStringLiteral("Открыть список записей, форма редактирования которых показывает этот "
                       "фрейм привязанным к записи"));
    btBound_->setVisible(false);
    panelLayout->addWidget(btBound_, 0, Qt::AlignLeft);
    // Under a frame with an item interface: what the host reads from it, kept current.
    items_ = new QLabel(panel_);
    items_->setObjectName(QStringLiteral("lbItems"));
    items_->setWordWrap(true);
    items_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    items_->setVisible(false);
    panelLayout->addWidget(items_);
    itemsTimer_ = new QTimer(this);
    itemsTimer_->setInterval(300);
    connect(itemsTimer_, &QTimer::timeout, this, [this] { showItems(); });
    panelLayout->addStretch(1);
    scroll_ = new QScrollArea(this);
    scroll_->setWidgetResizable(true);
    scroll_->setWidget(panel_);

    auto* split = new QSplitter(this);
    split->setObjectName(QStringLiteral("spBrowser"));
    split_ = split;
    split->addWidget(browser);
    split->addWidget(scroll_);
    split->setStretchFactor(1, 1);
    split->setSizes({440, 560}); // room for the frames' Russian names beside their classes
    setCentralWidget(split);

    QMenu* file = menuBar()->addMenu(QStringLiteral("&Файл"));
    // After a lost connection that the user did not want to restore at once.
    file->addAction(QStringLiteral("&Переподключиться к базе данных"), this, [this] {
        if (host_->reconnect()) host_->InfoBox(QStringLiteral("Соединение с базой данных восстановлено."));
    });
    file->addAction(QStringLiteral("&Выход"), this, &QWidget::close);
    QMenu* forms = menuBar()->addMenu(QStringLiteral("&Справочники"));
    QAction* cards = forms->addAction(QStringLiteral("&Карточки товаров…"), this, [this] { openCardList(); });
    QAction* clients =
        forms->addAction(QStringLiteral("К&лиенты (карточки клиентов)…"), this, [this] { openClientList(); });
    clients->setObjectName(QStringLiteral("actClients"));
    forms->addSeparator();
    for (const auto& def : referenceForms()) {
        const QString name = def.name;
        forms->addAction(def.caption + QStringLiteral(" (") + name + QStringLiteral(")…"), this,
                         [this, name] { openReferenceForm(name); });
    }
    QMenu* docs = menuBar()->addMenu(QStringLiteral("&Документы"));
    QAction* documents =
        docs->addAction(QStringLiteral("&Платёжные документы…"), this, [this] { openDocumentList(); });
    documents->setObjectName(QStringLiteral("actDocuments"));
    QAction* filters =
        docs->addAction(QStringLiteral("Панель &фильтров…"), this, [this] { openFilterPanel(); });
    filters->setObjectName(QStringLiteral("actFilterPanel"));
    docs->addAction(QStringLiteral("&Настройки отчёта…"), this,
                    [this] {
                        frames::guard([this] {
                            auto* form = new ReportSettingsForm(host_, this);
                            form->setAttribute(Qt::WA_DeleteOnClose);
                            form->prepare();
                            form->show();
                        });
                    })
        ->setObjectName(QStringLiteral("actReportSettings"));
    docs->addAction(QStringLiteral("Платежи выбранных &контрагентов…"), this, [this] { openClientReport(); })
        ->setObjectName(QStringLiteral("actClientReport"));
    docs->addAction(QStringLiteral("Отчёт &CRM…"), this,
                    [this] { openCrmForm(QStringLiteral("TCRMFirmSelect_Frame")); })
        ->setObjectName(QStringLiteral("actCrmReport"));
    docs->addAction(QStringLiteral("&Компании CRM…"), this,
                    [this] { openCrmForm(QStringLiteral("TFirmCharacter_Frame")); });
    docs->addAction(QStringLiteral("&События компаний…"), this,
                    [this] { openCrmForm(QStringLiteral("TEventCharacter_Frame")); });
    QMenu* reports = menuBar()->addMenu(QStringLiteral("&Отчёты"));
    reports->addAction(QStringLiteral("&Продажи…"), this, [this] { openSalesReport(); })
        ->setObjectName(QStringLiteral("actSalesReport"));
    QToolBar* tb = addToolBar(QStringLiteral("Главная"));
    tb->setObjectName(QStringLiteral("tbMain"));
    tb->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    setActionIcon(cards, "x-office-address-book", QStyle::SP_FileDialogListView);
    setActionIcon(documents, "x-office-document", QStyle::SP_FileIcon);
    setActionIcon(filters, "view-filter", QStyle::SP_FileDialogContentsView);
    tb->addAction(cards);
    tb->addAction(documents);
    tb->addAction(filters);

    connect(btBound_, &QPushButton::clicked, this, [this] {
        if (frame_) openHostOfFrame(frame_->objectName());
    });
    connect(tree_, &QTreeWidget::currentItemChanged, this,
            [this](QTreeWidgetItem* item) { itemChosen(item); });
    restoreWindowLayout();
    statusBar()->showMessage(
        QStringLiteral("База данных: %1")
            .arg(host_->RvDatabase() ? host_->RvDatabase()->connectString() : QString()));
}

MainWindow::~MainWindow() {
    closeFrame();
}

int MainWindow::filterFrames(const QString& text) {
    const QString needle = text.simplified();
    int shown = 0;
    for (int i = 0; i < tree_->topLevelItemCount(); ++i) {
        QTreeWidgetItem* family = tree_->topLevelItem(i);
        int inFamily = 0;
        for (int j = 0; j < family->childCount(); ++j) {
            QTreeWidgetItem* item = family->child(j);
            const bool match = needle.isEmpty() || item->text(0).contains(needle, Qt::CaseInsensitive) ||
                               item->text(1).contains(needle, Qt::CaseInsensitive);
            item->setHidden(!match);
            if (match) ++inFamily;
        }
        family->setHidden(inFamily == 0);
        shown += inFamily;
    }
    return shown;
}

void MainWindow::itemChosen(QTreeWidgetItem* item) {
    if (!item) return;
    const QString cls = item->data(0, Qt::UserRole).toString();
    if (!cls.isEmpty()) showFrame(cls);
}

void MainWindow::closeFrame() {
    if (!frame_) return;
    frames::TAbsEditFrame* f = frame_;
    frame_ = nullptr;
    hosted_->close();
    delete f;
    host_->saveLayout();
}

frames::TAbsEditFrame* MainWindow::showFrame(const QString& className) {
    const frames::WaitCursor wait;
    closeFrame();
    frames::TAbsEditFrame* made = nullptr;
    const bool ok = frames::guard([&] {
        made = registry_->create(className, panel_);
        made->setObjectName(className);
        static_cast<QVBoxLayout*>(panel_->layout())->insertWidget(2, made);
        applyFrameParams(made);
        hosted_->open(made);
        made->show();
    });
    if (!ok && made) {
        hosted_->remove(made);
        delete made;
        made = nullptr;
    }
    frame_ = made;
    const bool hasItems = made && made->metaObject()->indexOfMethod("ItemsCount()") >= 0;
    items_->setVisible(hasItems);
    if (hasItems)
        itemsTimer_->start();
    else
        itemsTimer_->stop();
    showItems();
    btBound_->setVisible(made && hasHostForm(className));
    const QString caption = frames::FormLoader::caption(className);
    const QString title = caption.isEmpty() ? className : caption + QStringLiteral(" — ") + className;
    info_->setText(made ? QStringLiteral("%1 (%2)").arg(
                              title, frames::Registry::familyCaption(registry_->find(className)->family))
                        : QStringLiteral("%1: фрейм не создан (см. сообщение об ошибке)").arg(title));
    return made;
}

static QString itemsText(QObject* frame) {
    int count = 0;
    if (!QMetaObject::invokeMethod(frame, "ItemsCount", Qt::DirectConnection, Q_RETURN_ARG(int, count)))
        return {};
    QStringList items;
    for (int i = 0; i < count; ++i) {
        QString item;
        QMetaObject::invokeMethod(frame, "ItemsItem", Qt::DirectConnection, Q_RETURN_ARG(QString, item),
                                  Q_ARG(int, i));
        items << item;
    }
    QString text =
        QStringLiteral("ItemsCount: %1\nItemsItem: %2").arg(count).arg(items.join(QStringLiteral(", ")));
    // The key list as the last rebuild left it (each change of the list rebuilds it).
    const QVariant keys = frame->property("sSQL");
    if (keys.isValid())
        text += QStringLiteral("\nGet_sSQL: %1 (%2)")
                    .arg(keys.toString(), frame->property("iChosenCount").toString());
    return text;
}

void MainWindow::showItems() {
    if (!frame_ || !itemsTimer_->isActive()) return;
    QString text;
    frames::guard([&] { text = itemsText(frame_); });
    if (items_->text() != text) items_->setText(text);
}

ClientReportForm* MainWindow::openClientReport() {
    if (clientReport_) {
        clientReport_->raise();
        clientReport_->activateWindow();
        return clientReport_;
    }
    auto* form = new ClientReportForm(host_, this);
    form->setAttribute(Qt::WA_DeleteOnClose);
    if (!frames::guard([&] { form->prepare(); })) {
        delete form;
        return nullptr;
    }
    clientReport_ = form;
    form->show();
    return form;
}

void MainWindow::openCardList() {
    if (cardList_) {
        cardList_->raise();
        cardList_->activateWindow();
        return;
    }
    auto* form = new CardListForm(host_, this);
    form->setAttribute(Qt::WA_DeleteOnClose);
    if (!frames::guard([&] { form->open(); })) {
        delete form;
        return;
    }
    cardList_ = form;
    form->show();
}

RecordListForm* MainWindow::openOnEditDialog(const QString& className) {
    if (recordList_) recordList_->close();
    RecordListForm* form = nullptr;
    if (!frames::guard([&] { form = RecordListForm::forLookup(host_, className, this); })) return nullptr;
    form->setAttribute(Qt::WA_DeleteOnClose);
    recordList_ = form;
    form->show();
    return form;
}

bool MainWindow::hasHostForm(const QString& className) const {
    const frames::FrameClass* c = registry_->find(className);
    if (!c) return false;
    if (c->family == QLatin1String("lookup") || className == QLatin1String("TReportChart_EF") ||
        className == QLatin1String("TClientSelect_DF"))
        return true;
    if (className == QLatin1String("TfrAddress")) return true; // on the client's card
    if (c->family == QLatin1String("filter")) return salesReport().findFilter(className) != nullptr;
    if (c->family == QLatin1String("crm")) return className != QLatin1String("TUserFirmCharacter_Frame");
    if (c->family == QLatin1String("medit")) return documentMassEdit().findByFrame(className) != nullptr;
    return (c->family == QLatin1String("edit") || c->family == QLatin1String("media")) &&
           (editsDocuments(className) || findDocumentFilter(className));
}

void MainWindow::openHostOfFrame(const QString& className) {
    const frames::FrameClass* c = registry_->find(className);
    if (!c) return;
    if (c->family == QLatin1String("lookup"))
        openOnEditDialog(className);
    else if (findDocumentFilter(className))
        openFilterPanel(className);
    else if (c->family == QLatin1String("filter") && salesReport().findFilter(className))
        openSalesReport(className);
    else if (className == QLatin1String("TReportChart_EF"))
        openFilterPanel(); // the chart of the report's result, under the filters
    else if (className == QLatin1String("TfrAddress"))
        openClientList();
    else if (className == QLatin1String("TClientSelect_DF"))
        openClientReport();
    else if (editsDocuments(className))
        openDocumentList(className);
    else if (c->family == QLatin1String("medit"))
        openMassEdit(className);
    else if (c->family == QLatin1String("crm"))
        openCrmForm(className);
}

void MainWindow::openCrmForm(const QString& className) {
    // The check lists on the edit dialogs of the companies or the events, the selection trees on
    // the report form.
    QWidget* form = nullptr;
    frames::guard([&] {
        if (className == QLatin1String("TEventCharacter_Frame")) {
            form = makeEventList(host_, this);
        } else if (className.startsWith(QLatin1String("TFirm"))) {
            form = makeFirmList(host_, this);
        } else {
            auto report = std::make_unique<CrmReportForm>(1, this);
            report->prepare();
            form = report.release();
        }
    });
    if (!form) return;
    form->setAttribute(Qt::WA_DeleteOnClose);
    form->show();
    form->raise();
    form->activateWindow();
}

MassEditDialog* MainWindow::openMassEdit(const QString& frameClass) {
    const MassEditColumn* column = documentMassEdit().findByFrame(frameClass);
    RecordListForm* list = column ? openDocumentList() : nullptr;
    if (!list) return nullptr;
    MassEditDialog* dlg = nullptr;
    if (!frames::guard([&] {
            auto made = std::make_unique<MassEditDialog>(host_, list, documentMassEdit());
            made->chooseColumn(column->column);
            dlg = made.release();
        }))
        return nullptr;
    dlg->setAttribute(Qt::WA_DeleteOnClose);
    dlg->show();
    return dlg;
}

RecordListForm* MainWindow::openClientList() {
    if (!clientList_) {
        RecordListForm* form = nullptr;
        if (!frames::guard([&] { form = makeClientList(host_, this); })) return nullptr;
        form->setAttribute(Qt::WA_DeleteOnClose);
        clientList_ = form;
    }
    clientList_->show();
    clientList_->raise();
    clientList_->activateWindow();
    return clientList_;
}

RecordListForm* MainWindow::openDocumentList(const QString& focusClass) {
    QString focus;
    for (const EditorSlot& s : documentEditors())
        if (s.className == focusClass) {
            focus = s.frameName();
            break;
        }
    if (!documentList_) {
        RecordListForm* form = nullptr;
        if (!frames::guard([&] { form = makeDocumentList(host_, this); })) return nullptr;
        form->setAttribute(Qt::WA_DeleteOnClose);
        documentList_ = form;
    }
    documentList_->focusEditor = focus;
    documentList_->show();
    documentList_->raise();
    documentList_->activateWindow();
    return documentList_;
}

FilterPanelForm* MainWindow::openFilterPanel(const QString& focusClass) {
    if (!filterPanel_) {
        auto* form = new FilterPanelForm(host_, this);
        form->setAttribute(Qt::WA_DeleteOnClose);
        if (!frames::guard([&] { form->prepare(); })) {
            delete form;
            return nullptr;
        }
        filterPanel_ = form;
    }
    filterPanel_->show();
    filterPanel_->raise();
    filterPanel_->activateWindow();
    if (!focusClass.isEmpty()) filterPanel_->focusFilter(focusClass);
    return filterPanel_;
}

FilterPanelForm* MainWindow::openSalesReport(const QString& focusClass) {
    if (!salesReport_) {
        auto* form = new FilterPanelForm(host_, salesReport(), this);
        form->setAttribute(Qt::WA_DeleteOnClose);
        if (!frames::guard([&] { form->prepare(); })) {
            delete form;
            return nullptr;
        }
        salesReport_ = form;
    }
    salesReport_->show();
    salesReport_->raise();
    salesReport_->activateWindow();
    if (!focusClass.isEmpty()) salesReport_->focusFilter(focusClass);
    return salesReport_;
}

void MainWindow::openReferenceForm(const QString& formName) {
    frames::guard([&] {
        frames::TRunParams params;
        if (host_->RunModule(formName, params) == ReferenceForm::Confirmed)
            statusBar()->showMessage(
                QStringLiteral("%1: выбран ключ %2").arg(formName, params.KeyValue.toString()));
    });
}

// The window's place and size, the browser's width and the frame last shown come back as the user
// left them; a value that cannot be read is ignored.
void MainWindow::restoreWindowLayout() {
    frames::TConfigItem* node = host_->LayoutRoot()->ItemByName(objectName());
    restorePlacement(this, node);
    if (node->IsExists(QStringLiteral("Splitter")))
        split_->restoreState(
            QByteArray::fromBase64(node->ItemByName(QStringLiteral("Splitter"))->GetAsString().toLatin1()));
    if (node->IsExists(QStringLiteral("Frame"))) {
        const QString cls = node->ItemByName(QStringLiteral("Frame"))->GetAsString();
        const QList<QTreeWidgetItem*> found = tree_->findItems(cls, Qt::MatchExactly | Qt::MatchRecursive, 1);
        if (!found.isEmpty()) tree_->setCurrentItem(found.first());
    }
}

void MainWindow::saveWindowLayout() {
    frames::TConfigItem* node = host_->LayoutRoot()->ItemByName(objectName());
    savePlacement(this, node);
    node->ItemByName(QStringLiteral("Splitter"))
        ->SetAsString(QString::fromLatin1(split_->saveState().toBase64()));
    node->ItemByName(QStringLiteral("Frame"))->SetAsString(frame_ ? frame_->objectName() : QString());
}

void MainWindow::closeEvent(QCloseEvent* e) {
    saveWindowLayout();
    // Every form still open closes as if the user closed it: it keeps its place and its frames
    // their settings.
    for (QWidget* w : findChildren<QWidget*>(Qt::FindDirectChildrenOnly))
        if (w->isWindow() && w->isVisible()) w->close();
    if (cardList_) cardList_->close();
    if (recordList_) recordList_->close();
    if (documentList_) documentList_->close();
    if (clientList_) clientList_->close();
    if (filterPanel_) filterPanel_->close();
    if (salesReport_) salesReport_->close();
    closeFrame();
    host_->saveLayout();
    QMainWindow::closeEvent(e);
}

} // namespace workbench

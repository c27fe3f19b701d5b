#include "frames/media/TY_Images.h"
#include "frames/core/Guard.h"
#include "frames/core/HostBoxes.h"
#include "frames/core/Registry.h"
#include "frames/media/ImagePrint.h"
#include "platform/db/DataSet.h"
#include "platform/db/DataSource.h"
#include "platform/db/Database.h"
#include "platform/db/Query.h"
#include "platform/db/Transaction.h"
#include "platform/widgets/DBGrid.h"
#include <QAction>
#include <QApplication>
#include <QBuffer>
#include <QClipboard>
#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QGroupBox>
#include <QImageReader>
#include <QLibrary>
#include <QMenu>
#include <QMimeData>
#include <QPainter>
#include <QRegularExpression>
#include <QScrollArea>
#include <QSplitter>
#include <QStyle>
#include <QToolBar>
#include <QUrl>
#include <QVBoxLayout>
#include <stdexcept>

namespace frames {

namespace {

const QString NoPages = QStringLiteral(" <Для объекта не задано ни одной страницы> ");

// Where a metafile is kept on the clipboard beside nothing else.
const QString EmfMime = QStringLiteral("image/x-emf");
const QString WmfMime = QStringLiteral("image/x-wmf");

bool isWmf(const QByteArray& d) {
    // A placeable metafile, or a plain one (type 1 or 2, header of 9 words).
    return d.startsWith(QByteArray::fromHex("d7cdc69a")) ||
           (d.size() >= 18 &&
            (d.startsWith(QByteArray::fromHex("01000900")) || d.startsWith(QByteArray::fromHex("02000900"))));
}

bool isEmf(const QByteArray& d) {
    return d.size() >= 44 && d.startsWith(QByteArray::fromHex("01000000")) && d.mid(40, 4) == " EMF";
}

QByteArray encode(const QImage& image, const char* format) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

// Decodes data with the reader of that format only (no guessing).
QImage decode(const QByteArray& data, const QByteArray& format) {
    QBuffer buffer;
    buffer.setData(data);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, format);
    reader.setAutoDetectImageFormat(false);
    return reader.read();
}

// The format the contents show (empty when they show none).
QByteArray formatOfContents(const QByteArray& data) {
    QBuffer buffer;
    buffer.setData(data);
    buffer.open(QIODevice::ReadOnly);
    return QImageReader::imageFormat(&buffer).toLower();
}

ImageFormat classOfReader(const QByteArray& format) {
    if (format == "bmp" || format == "dib") return ifBitmap;
    if (format == "jpeg" || format == "jpg") return ifJpeg;
    if (format == "ico" || format == "cur") return ifIcon;
    return ifUnknown;
}

QImage placeholder(const QString& text) {
    QImage img(320, 120, QImage::Format_RGB32);
    img.fill(QColor(245, 245, 245));
    QPainter p(&img);
    p.setPen(QPen(QColor(150, 150, 150), 2, Qt::DashLine));
    p.drawRect(img.rect().adjusted(1, 1, -2, -2));
    p.setPen(Qt::black);
    p.drawText(img.rect().adjusted(8, 8, -8, -8), Qt::AlignCenter | Qt::TextWordWrap, text);
    return img;
}

// A plain SQL name (table or column): what the frame puts into statements unquoted.
bool plainName(const QString& s) {
    static const QRegularExpression re(QStringLiteral("^[A-Za-z][A-Za-z0-9_$]{0,62}$"));
    return re.match(s).hasMatch();
}

} // namespace

// ---- TGraphic

TGraphic TGraphic::fromData(const QByteArray& data, const QString& ext) {
    TGraphic g;
    if (data.isEmpty()) return g;
    const QString e = ext.toLower();
    // Metafiles have no decoder here: kept as they are when the name or the contents say so.
    if (e == QLatin1String(".emf") || isEmf(data)) {
        g.cls = ifEnhMetafile;
        g.data = data;
        return g;
    }
    if (e == QLatin1String(".wmf") || isWmf(data)) {
        g.cls = ifMetafile;
        g.data = data;
        return g;
    }
    QByteArray format = e.mid(1).toLatin1();
    if (format == "jpg" || format == "jpe") format = "jpeg";
    // The contents decide where they say what they are; the name where they do not.
    const QByteArray contents = formatOfContents(data);
    QByteArray used = contents.isEmpty() ? format : contents;
    QImage image = decode(data, used);
    if (image.isNull() && used != format) image = decode(data, used = format);
    if (image.isNull()) return g;
    g.image = image;
    g.cls = classOfReader(used);
    g.data = data;
    if (g.cls == ifUnknown) {
        // Another format Qt reads (PNG, GIF …): kept as a bitmap, without loss.
        g.cls = ifBitmap;
        g.data = encode(image, "BMP");
    }
    return g;
}

TGraphic TGraphic::fromImage(const QImage& image) {
    TGraphic g;
    if (image.isNull()) return g;
    g.cls = ifBitmap;
    g.image = image;
    g.data = encode(image, "BMP");
    return g;
}

// ---- TfrImages

TfrImages::TfrImages(QWidget* parent) : TAbsEditFrame(parent) {
    resize(600, 400);
    lbSelect->hide();
    auto* layout = new QVBoxLayout;
    layout->setContentsMargins(0, 0, 0, 0);
    body()->layout()->addItem(layout);

    pfTransaction = nullptr; // on the host's image database, made in Init

    pfImageKind = new db::DataSet(this);
    pfImageKind->setObjectName(QStringLiteral("pfImageKind"));
    pfImageKind->afterOpen.connect([this](db::AbstractDataSet&) { pfImageKindAfterOpen(); });
    pfImageKind->afterScroll.connect(
        [this](db::AbstractDataSet&) { guard([this] { pfImageKindEndScroll(); }); });
    Ds = new db::DataSource(pfImageKind, this);
    Ds->setObjectName(QStringLiteral("Ds"));

    pfImage = new db::DataSet(this);
    pfImage->setObjectName(QStringLiteral("pfImage"));
    pfImage->beforeOpen.connect([this](db::AbstractDataSet&) { pfImageBeforeOpen(); });

    Splitter = new QSplitter(Qt::Horizontal, body());
    Splitter->setObjectName(QStringLiteral("Splitter"));
    Splitter->setChildrenCollapsible(false);
    layout->addWidget(Splitter);

    EhDBGrid = new ui::DBGrid(Splitter);
    EhDBGrid->setObjectName(QStringLiteral("EhDBGrid"));
    EhDBGrid->setMinimumWidth(1);
    EhDBGrid->setReadOnly(true);
    EhDBGrid->setDataSource(Ds);

    pnImages = new QWidget(Splitter);
    pnImages->setObjectName(QStringLiteral("pnImages"));
    auto* images = new QVBoxLayout(pnImages);
    images->setContentsMargins(0, 0, 0, 0);
    BarDockCtrl = new QToolBar(pnImages);
    BarDockCtrl->setObjectName(QStringLiteral("BarDockCtrl"));
    BarDockCtrl->setIconSize(QSize(16, 16));
    images->addWidget(BarDockCtrl);
    gbImage = new QGroupBox(NoPages, pnImages);
    gbImage->setObjectName(QStringLiteral("gbImage"));
    images->addWidget(gbImage, 1);
    auto* box = new QVBoxLayout(gbImage);
    box->setContentsMargins(2, 2, 2, 2);
    sbImage = new QScrollArea(gbImage);
    sbImage->setObjectName(QStringLiteral("sbImage"));
    sbImage->setAlignment(Qt::AlignCenter);
    sbImage->setBackgroundRole(QPalette::Dark);
    box->addWidget(sbImage);
    iImage = new QLabel;
    iImage->setObjectName(QStringLiteral("iImage"));
    iImage->setAlignment(Qt::AlignCenter);
    sbImage->setWidget(iImage);
    Splitter->setStretchFactor(1, 1);
    Splitter->setSizes({150, 450});

    QStyle* st = style();
    aAddPage = makeAction("aAddPage", QStringLiteral("Добавить страницу"),
                          st->standardIcon(QStyle::SP_FileIcon), &TfrImages::aAddPageExecute);
    aDelPage = makeAction("aDelPage", QStringLiteral("Удалить страницу"),
                          st->standardIcon(QStyle::SP_TrashIcon), &TfrImages::aDelPageExecute);
    BarDockCtrl->addSeparator();
    aFirst = makeAction("aFirst", QStringLiteral("Первая страница"),
                        st->standardIcon(QStyle::SP_MediaSkipBackward), &TfrImages::aFirstExecute);
    aPrevious = makeAction("aPrevious", QStringLiteral("Предыдущая страница"),
                           st->standardIcon(QStyle::SP_MediaSeekBackward), &TfrImages::aPreviousExecute);
    aNext = makeAction("aNext", QStringLiteral("Следующая страница"),
                       st->standardIcon(QStyle::SP_MediaSeekForward), &TfrImages::aNextExecute);
    aLast = makeAction("aLast", QStringLiteral("Последняя страница"),
                       st->standardIcon(QStyle::SP_MediaSkipForward), &TfrImages::aLastExecute);
    BarDockCtrl->addSeparator();
    aLoadFromFile =
        makeAction("aLoadFromFile", QStringLiteral("Загрузить из файла"),
                   st->standardIcon(QStyle::SP_DialogOpenButton), &TfrImages::aLoadFromFileExecute);
    aSaveToFile = makeAction("aSaveToFile", QStringLiteral("Сохранить в файл"),
                             st->standardIcon(QStyle::SP_DialogSaveButton), &TfrImages::aSaveToFileExecute);
    aGetImageFromScanner =
        makeAction("aGetImageFromScanner", QStringLiteral("Загрузить изображение со сканера"),
                   st->standardIcon(QStyle::SP_DriveFDIcon), &TfrImages::aGetImageFromScannerExecute);
    aPrintAction = makeAction("aPrintAction", QStringLiteral("Печать"),
                              st->standardIcon(QStyle::SP_ComputerIcon), &TfrImages::aPrintActionExecute);
    BarDockCtrl->addSeparator();
    aCutImage = makeAction("aCutImage", QStringLiteral("Вырезать"),
                           QIcon::fromTheme(QStringLiteral("edit-cut")), &TfrImages::aCutImageExecute);
    aCopyImage = makeAction("aCopyImage", QStringLiteral("Копировать"),
                            QIcon::fromTheme(QStringLiteral("edit-copy")), &TfrImages::aCopyImageExecute);
    aPasteImage = makeAction("aPasteImage", QStringLiteral("Вставить"),
                             QIcon::fromTheme(QStringLiteral("edit-paste")), &TfrImages::aPasteImageExecute);
    aClearImage = makeAction("aClearImage", QStringLiteral("Очистить"),
                             st->standardIcon(QStyle::SP_DialogResetButton), &TfrImages::aClearImageExecute);
    ClearAllAction =
        makeAction("ClearAllAction", QStringLiteral("Очистить все"),
                   st->standardIcon(QStyle::SP_DialogDiscardButton), &TfrImages::ClearAllActionExecute);
    BarDockCtrl->addSeparator();
    brbStretch = new QAction(QStringLiteral("Растянуть"), this);
    brbStretch->setObjectName(QStringLiteral("brbStretch"));
    brbStretch->setCheckable(true);
    brbStretch->setIcon(st->standardIcon(QStyle::SP_TitleBarMaxButton));
    BarDockCtrl->addAction(brbStretch);
    connect(brbStretch, &QAction::triggered, this, [this] { guard([this] { brbStretchClick(); }); });
    siStretch = new QAction(QStringLiteral("Растянуть"), this);
    siStretch->setObjectName(QStringLiteral("siStretch"));
    siStretch->setCheckable(true);
    connect(siStretch, &QAction::triggered, this, [this] { guard([this] { siStretchClick(); }); });

    pmImage = new QMenu(this);
    pmImage->setObjectName(QStringLiteral("pmImage"));
    pmImage->addActions({aCutImage, aCopyImage, aPasteImage, aClearImage});
    pmImage->addSeparator();
    pmImage->addActions({aLoadFromFile, aSaveToFile, aGetImageFromScanner, aPrintAction});
    pmImage->addSeparator();
    pmImage->addAction(siStretch);
    sbImage->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(sbImage, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& at) { pmImage->popup(sbImage->mapToGlobal(at)); });
    sbImage->installEventFilter(this);
    ActionListUpdate();
}

TfrImages::~TfrImages() = default;

QAction* TfrImages::makeAction(const char* name, const QString& caption, const QIcon& icon,
                               void (TfrImages::*handler)()) {
    auto* a = new QAction(icon, caption, this);
    a->setObjectName(QString::fromLatin1(name));
    a->setToolTip(caption);
    BarDockCtrl->addAction(a);
    connect(a, &QAction::triggered, this, [this, handler] {
        guard([this, handler] { (this->*handler)(); });
        ActionListUpdate();
    });
    return a;
}

void TfrImages::Init() {
    TAbsEditFrame::Init();
    db::Database* images = dmDataBaseFIB()->ImageDatabase();
    if (!images) {
        // A host without an image database: said where the pages would be.
        gbImage->setTitle(QStringLiteral(" <База изображений не подключена> "));
        TraceText(QStringLiteral("TfrImages: the host has no image database"));
        ActionListUpdate();
        return;
    }
    // Not given an object's table: nothing to show (a frame shown on its own).
    if (TableName.isEmpty() && KeyFieldName.isEmpty()) {
        ActionListUpdate();
        return;
    }
    if (!plainName(TableName) || !plainName(KeyFieldName))
        throw std::runtime_error(
            QStringLiteral("Фрейм изображений: таблица «%1» или ключевое поле «%2» заданы неверно")
                .arg(TableName, KeyFieldName)
                .toStdString());
    // Write, no wait, read committed; a time-out rolls back.
    pfTransaction = new db::Transaction(images, db::TransactionOptions::writeNoWait(), this);
    pfTransaction->setObjectName(QStringLiteral("pfTransaction"));
    for (db::DataSet* ds : {pfImageKind, pfImage}) {
        ds->setDatabase(images);
        ds->setTransaction(pfTransaction);
        ds->setUpdateTransaction(pfTransaction);
    }
    const QString where =
        QStringLiteral(" where %1=:KeyValue and image_kind=:IMAGE_KIND and page_number=:PAGE_NUMBER")
            .arg(keyColumn());
    if (pfImage->selectSql().trimmed().isEmpty())
        pfImage->setSelectSql(QStringLiteral("select IMAGE, IMAGE_FORMAT from ") + table() + where);
    pfImage->setUpdateSql(
        QStringLiteral("update %1 set IMAGE=:IMAGE, IMAGE_FORMAT=:IMAGE_FORMAT").arg(table()) + where);
    initialized_ = true;
    pfTransaction->ensureStarted();
    pfImageKind->open();
}

QString TfrImages::table() const {
    return TableName;
}

QString TfrImages::keyColumn() const {
    return KeyFieldName;
}

int TfrImages::kindId() const {
    if (!pfImageKind->active() || pfImageKind->isEmpty()) return 0;
    return pfImageKind->fieldByName(QStringLiteral("ID"))->value().toInt();
}

bool TfrImages::kindsEmpty() const {
    return !pfImageKind->active() || pfImageKind->isEmpty();
}

void TfrImages::exec(const QString& sql) {
    db::Query q(pfTransaction->database(), pfTransaction);
    q.setSql(sql);
    pfTransaction->ensureStarted();
    try {
        q.exec();
        pfTransaction->commitRetaining();
    } catch (...) {
        if (pfTransaction->active()) guard([this] { pfTransaction->rollbackRetaining(); });
        throw;
    }
}

void TfrImages::removeFile(const QString& path) {
    if (QFile::exists(path)) QFile::remove(path);
}

// ---- pages

void TfrImages::pfImageKindAfterOpen() {
    guard([this] { RefreshImageKind(); });
}

void TfrImages::pfImageKindEndScroll() {
    RefreshImageKind();
}

void TfrImages::RefreshImageKind() {
    if (!initialized_) return;
    numbers_.clear();
    if (!kindsEmpty()) {
        // The pages of the object and kind by number: a deleted page leaves a gap, the pages after
        // it keep their numbers and are shown in order.
        db::Query q(pfTransaction->database(), pfTransaction);
        q.setSql(
            QStringLiteral("select page_number from %1 where %2=%3 and image_kind=%4 order by page_number")
                .arg(table(), keyColumn())
                .arg(KeyValue)
                .arg(kindId()));
        pfTransaction->ensureStarted();
        q.open();
        while (q.next()) numbers_ << q.value(0).toInt();
        q.close();
    }
    PageCount = int(numbers_.size());
    CurrentPage = PageCount > 0 ? 1 : 0;
    RefreshPage();
}

int TfrImages::PageNumber() const {
    return CurrentPage >= 1 && CurrentPage <= numbers_.size() ? numbers_[CurrentPage - 1] : 0;
}

void TfrImages::RefreshPage() {
    if (PageCount != 0) {
        gbImage->setTitle(QStringLiteral(" Страница %1 из %2 ").arg(CurrentPage).arg(PageCount));
        pfImage->close();
        pfImage->open();
        GetImage();
    } else {
        gbImage->setTitle(NoPages);
        pfImage->close();
        setPicture({});
    }
    ActionListUpdate();
}

void TfrImages::pfImageBeforeOpen() {
    pfImage->paramByName(QStringLiteral("KeyValue"))->setAsInteger(KeyValue);
    pfImage->paramByName(QStringLiteral("IMAGE_KIND"))->setAsInteger(kindId());
    pfImage->paramByName(QStringLiteral("PAGE_NUMBER"))->setAsInteger(PageNumber());
}

int TfrImages::CurrentFormat() const {
    if (!pfImage->active() || pfImage->isEmpty()) return ifUnknown;
    const db::Field* f = pfImage->fieldByName(QStringLiteral("IMAGE_FORMAT"));
    return f->isNull() ? int(ifUnknown) : f->value().toInt();
}

QString TfrImages::TempFileName(int format) {
    switch (format) {
    case ifJpeg:
        return QStringLiteral("TyImage.jpg");
    case ifIcon:
        return QStringLiteral("TyImage.ico");
    case ifEnhMetafile:
        return QStringLiteral("TyImage.emf");
    case ifMetafile:
        return QStringLiteral("TyImage.wmf");
    default:
        return QStringLiteral("TyImage.bmp");
    }
}

QString TfrImages::SaveExtension(int format) {
    return TempFileName(format).mid(7); // ".bmp" …
}

QString TfrImages::SaveFilter(int format) {
    switch (format) {
    case ifJpeg:
        return QStringLiteral("JPEG Image File (*.jpg)|*.jpg|All (*.*)|*.*");
    case ifIcon:
        return QStringLiteral("Icons (*.ico)|*.ico|All (*.*)|*.*");
    case ifEnhMetafile:
        return QStringLiteral("Enhanced Metafiles (*.emf)|*.emf|All (*.*)|*.*");
    case ifMetafile:
        return QStringLiteral("Metafiles (*.wmf)|*.wmf|All (*.*)|*.*");
    default:
        return QStringLiteral("Bitmaps (*.bmp)|*.bmp|All (*.*)|*.*");
    }
}

QString TfrImages::DefaultFileName() const {
    QString kind =
        kindsEmpty() ? QString() : pfImageKind->fieldByName(QStringLiteral("NAME"))->value().toString();
    kind.replace(QRegularExpression(QStringLiteral("[\\\\/:*?\"<>|\\s]+")), QStringLiteral("-"));
    QStringList parts{TableName, QString::number(KeyValue)};
    if (!kind.isEmpty()) parts << kind;
    parts << QString::number(PageNumber());
    return parts.join(QLatin1Char('_')) + SaveExtension(CurrentFormat());
}

void TfrImages::GetImage() {
    const db::Field* image =
        pfImage->active() && !pfImage->isEmpty() ? pfImage->fieldByName(QStringLiteral("IMAGE")) : nullptr;
    if (!image || image->isNull()) {
        setPicture({});
    } else {
        // Through a file named for the format, as the decoders go by the file name.
        const QString path = QDir(TYConfig()->ProfilePath()).filePath(TempFileName(CurrentFormat()));
        removeFile(path);
        QByteArray data;
        {
            QFile f(path);
            if (f.open(QIODevice::WriteOnly) && f.write(image->asBytes()) >= 0 && f.flush()) {
                f.close();
                if (f.open(QIODevice::ReadOnly)) data = f.readAll();
            } else {
                data = image->asBytes(); // no profile folder to write to: read from memory
            }
        }
        removeFile(path);
        TGraphic g = TGraphic::fromData(data, QFileInfo(path).suffix().prepend(QLatin1Char('.')));
        if (g.empty() && !data.isEmpty())
            TraceText(QStringLiteral(
                          "Image of %1 %2=%3 kind %4 page %5: not a picture that can be read (format %6)")
                          .arg(table(), keyColumn())
                          .arg(KeyValue)
                          .arg(kindId())
                          .arg(PageNumber())
                          .arg(CurrentFormat()));
        setPicture(std::move(g));
        if (picture_.empty() && !data.isEmpty())
            iImage->setPixmap(QPixmap::fromImage(placeholder(QStringLiteral("Изображение не распознано"))));
    }
    sbImageResize();
}

void TfrImages::SetImage(int format) {
    if (!pfImage->active() || pfImage->isEmpty()) return;
    db::Field* image = pfImage->fieldByName(QStringLiteral("IMAGE"));
    db::Field* code = pfImage->fieldByName(QStringLiteral("IMAGE_FORMAT"));
    pfTransaction->ensureStarted();
    try {
        pfImage->edit();
        if (!picture_.empty()) {
            image->setValue(picture_.data);
            code->setValue(int(ifUnknown));
            code->setValue(format != ifUnknown ? format : int(picture_.cls));
        } else {
            image->setValue(QVariant());
            code->setValue(int(ifUnknown));
        }
        pfImage->post();
        pfTransaction->commitRetaining();
    } catch (...) {
        if (pfImage->inEditMode()) guard([this] { pfImage->cancel(); });
        if (pfTransaction->active()) guard([this] { pfTransaction->rollbackRetaining(); });
        throw;
    }
}

// ---- the picture

void TfrImages::setPicture(TGraphic g) {
    picture_ = std::move(g);
    showPicture();
}

void TfrImages::showPicture() {
    if (picture_.empty()) {
        iImage->clear();
        iImage->resize(0, 0);
        return;
    }
    QImage shown =
        picture_.isMetafile()
            ? placeholder(picture_.cls == ifEnhMetafile
                              ? QStringLiteral("Расширенный метафайл (EMF): просмотр не поддерживается")
                              : QStringLiteral("Метафайл (WMF): просмотр не поддерживается"))
            : picture_.image;
    if (stretch_ && !picture_.isMetafile()) {
        const QSize room = sbImage->viewport()->size() - QSize(2, 2);
        if (room.isValid() && !room.isEmpty())
            shown = shown.scaled(room, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    }
    iImage->setPixmap(QPixmap::fromImage(shown));
    iImage->resize(shown.size());
}

void TfrImages::sbImageResize() {
    sbImage->setWidgetResizable(false);
    showPicture();
}

void TfrImages::siStretchClick() {
    stretch_ = siStretch->isChecked();
    brbStretch->setChecked(stretch_);
    sbImageResize();
}

void TfrImages::brbStretchClick() {
    stretch_ = brbStretch->isChecked();
    siStretch->setChecked(stretch_);
    sbImageResize();
}

// ---- actions

void TfrImages::ActionListUpdate() {
    const bool ro = GetReadOnly() || !initialized_;
    const bool page = PageCount > 0 && pfImage->active() && !pfImage->isEmpty();
    const bool stored = page && !pfImage->fieldByName(QStringLiteral("IMAGE"))->isNull();
    aFirst->setEnabled(PageCount >= 1 && CurrentPage >= 2);
    aPrevious->setEnabled(PageCount >= 1 && CurrentPage >= 2);
    aNext->setEnabled(PageCount > 0 && CurrentPage < PageCount);
    aLast->setEnabled(PageCount > 0 && CurrentPage < PageCount);
    aAddPage->setEnabled(!ro && !kindsEmpty());
    aDelPage->setEnabled(!ro && !kindsEmpty() && PageCount >= 1);
    aLoadFromFile->setEnabled(!ro && page);
    aGetImageFromScanner->setEnabled(!ro && page);
    aPasteImage->setEnabled(!ro && page);
    aCutImage->setEnabled(!ro && page && !picture_.empty());
    aClearImage->setEnabled(!ro && page && !picture_.empty());
    aCopyImage->setEnabled(!picture_.empty());
    aPrintAction->setEnabled(!picture_.empty() && !picture_.isMetafile());
    aSaveToFile->setEnabled(stored);
    ClearAllAction->setEnabled(!ro && initialized_);
}

void TfrImages::aFirstExecute() {
    CurrentPage = 1;
    RefreshPage();
}

void TfrImages::aPreviousExecute() {
    CurrentPage = qMax(1, CurrentPage - 1);
    RefreshPage();
}

void TfrImages::aNextExecute() {
    CurrentPage = qMin(PageCount, CurrentPage + 1);
    RefreshPage();
}

void TfrImages::aLastExecute() {
    CurrentPage = PageCount;
    RefreshPage();
}

void TfrImages::aAddPageExecute() {
    if (GetReadOnly() || kindsEmpty()) Abort();
    // The next number after the last page (the page count + 1 when no page was deleted).
    const int number = (numbers_.isEmpty() ? 0 : numbers_.back()) + 1;
    exec(QStringLiteral("insert into %1 (%2,image_kind,page_number) values (%3,%4,%5)")
             .arg(table(), keyColumn())
             .arg(KeyValue)
             .arg(kindId())
             .arg(number));
    numbers_ << number;
    PageCount = int(numbers_.size());
    CurrentPage = PageCount;
    RefreshPage();
}

void TfrImages::aDelPageExecute() {
    if (GetReadOnly() || kindsEmpty() || PageCount < 1) Abort();
    if (!TyConfirmBox(QStringLiteral("Вы действительно хотите удалить текущую страницу?"),
                      QStringLiteral("Удаление")))
        return;
    exec(QStringLiteral("delete from %1 where %2=%3 and image_kind=%4 and page_number=%5")
             .arg(table(), keyColumn())
             .arg(KeyValue)
             .arg(kindId())
             .arg(PageNumber()));
    RefreshImageKind();
}

void TfrImages::ClearAllActionExecute() {
    if (GetReadOnly() || !initialized_) Abort();
    exec(QStringLiteral("delete from %1 where %2=%3").arg(table(), keyColumn()).arg(KeyValue));
    RefreshImageKind();
}

void TfrImages::LoadFromFile(const QString& fileName) {
    QFile f(fileName);
    if (!f.open(QIODevice::ReadOnly))
        throw std::runtime_error(
            QStringLiteral("Не удалось открыть файл %1: %2").arg(fileName, f.errorString()).toStdString());
    TGraphic g = TGraphic::fromData(f.readAll(), QLatin1Char('.') + QFileInfo(fileName).suffix());
    if (g.empty())
        throw std::runtime_error(
            QStringLiteral("Файл %1 не содержит изображения известного формата").arg(fileName).toStdString());
    setPicture(std::move(g));
    sbImageResize();
    SetImage(ifUnknown);
}

void TfrImages::aLoadFromFileExecute() {
    if (GetReadOnly()) Abort();
    if (dmDataBaseFIB()->NoFileOpenDialog()) return;
    const QString name = QFileDialog::getOpenFileName(
        this, QStringLiteral("Загрузить из файла"), QString(),
        QStringLiteral("Изображения (*.bmp *.jpg *.jpeg *.ico *.emf *.wmf *.png *.gif);;Все файлы (*)"));
    if (!name.isEmpty()) LoadFromFile(name);
}

void TfrImages::SaveToFile(const QString& fileName) {
    const db::Field* image =
        pfImage->active() && !pfImage->isEmpty() ? pfImage->fieldByName(QStringLiteral("IMAGE")) : nullptr;
    if (!image || image->isNull()) Abort();
    QFile f(fileName);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate) || f.write(image->asBytes()) < 0 || !f.flush())
        throw std::runtime_error(
            QStringLiteral("Не удалось записать файл %1: %2").arg(fileName, f.errorString()).toStdString());
}

void TfrImages::aSaveToFileExecute() {
    const int format = CurrentFormat();
    // "Bitmaps (*.bmp)|*.bmp|All (*.*)|*.*" as the dialog takes it: "Bitmaps (*.bmp);;All (*.*)".
    const QStringList parts = SaveFilter(format).split(QLatin1Char('|'));
    QStringList filters;
    for (int i = 0; i < parts.size(); i += 2) filters << parts[i];
    QFileDialog dialog(this, QStringLiteral("Сохранить в файл"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setNameFilters(filters);
    dialog.setDefaultSuffix(SaveExtension(format).mid(1));
    dialog.selectFile(DefaultFileName());
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return;
    SaveToFile(dialog.selectedFiles().front());
}

void TfrImages::aCopyImageExecute() {
    if (picture_.empty()) return;
    auto* mime = new QMimeData;
    if (picture_.isMetafile())
        mime->setData(picture_.cls == ifEnhMetafile ? EmfMime : WmfMime, picture_.data);
    else
        mime->setImageData(picture_.image);
    QGuiApplication::clipboard()->setMimeData(mime);
}

void TfrImages::aCutImageExecute() {
    if (GetReadOnly()) Abort();
    aCopyImageExecute();
    setPicture({});
    sbImageResize();
    SetImage(ifUnknown);
}

void TfrImages::aClearImageExecute() {
    if (GetReadOnly()) Abort();
    setPicture({});
    sbImageResize();
    SetImage(ifUnknown);
}

void TfrImages::aPasteImageExecute() {
    if (GetReadOnly()) Abort();
    const QMimeData* mime = QGuiApplication::clipboard()->mimeData();
    const QImage image = mime && mime->hasImage() ? qvariant_cast<QImage>(mime->imageData()) : QImage();
    if (image.isNull()) {
        TyWarningBox(QStringLiteral("В буфере обмена нет изображения."));
        return;
    }
    setPicture({});
    setPicture(TGraphic::fromImage(image));
    sbImageResize();
    // A pasted picture is stored as a bitmap, whatever it was.
    SetImage(ifBitmap);
}

void TfrImages::aPrintActionExecute() {
    if (picture_.empty() || picture_.isMetafile()) return;
    // The print dialog chooses the printer; the page is the picture fitted to A4.
    printPicture(picture_.image, DefaultFileName(), this, PrintFile);
}

QString TfrImages::DefaultScannerModule() {
    // The platform's name of the module ImgScan (libImgScan.so here).
    const QString dir = QCoreApplication::applicationDirPath() + QStringLiteral("/BPL_Main/");
#if defined(Q_OS_WIN)
    return dir + QStringLiteral("ImgScan.dll");
#elif defined(Q_OS_DARWIN)
    return dir + QStringLiteral("libImgScan.dylib");
#else
    return dir + QStringLiteral("libImgScan.so");
#endif
}

void TfrImages::aGetImageFromScannerExecute() {
    if (GetReadOnly()) Abort();
    const QString temp = QDir(TYConfig()->ProfilePath()).filePath(QStringLiteral("TyImage.bmp"));
    removeFile(temp);
    const QString module =
        QFileInfo(ScannerModule.isEmpty() ? DefaultScannerModule() : ScannerModule).absoluteFilePath();
    QLibrary library(module);
    // The temporary file goes and the module is released however the scan ends.
    struct Cleanup {
        QString temp;
        QLibrary& library;
        ~Cleanup() {
            removeFile(temp);
            if (library.isLoaded()) library.unload();
        }
    } cleanup{temp, library};
    if (!QFileInfo::exists(module) || !library.load()) {
        if (QFileInfo::exists(module)) TraceText(QStringLiteral("Scanner module: ") + library.errorString());
        throw std::runtime_error(
            (QStringLiteral("Модуль ") + QDir::toNativeSeparators(module) + QStringLiteral(" не найден."))
                .toStdString());
    }
    using ScanImage = bool (*)(const char* fileName);
    auto scan = reinterpret_cast<ScanImage>(library.resolve("ScanImage"));
    if (!scan)
        throw std::runtime_error(
            QStringLiteral(
                "Неверный формат модуля ImgScan.dll. Точка входа (процедура ScanImage) не найдена.")
                .toStdString());
    const QByteArray name = QFile::encodeName(QDir::toNativeSeparators(temp));
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const bool scanned = scan(name.constData());
    QApplication::restoreOverrideCursor();
    if (!scanned) {
        TyErrorBox(QStringLiteral("Сканер не найден!"), QStringLiteral("Ошибка"));
        return;
    }
    stretch_ = true;
    brbStretch->setChecked(true);
    siStretch->setChecked(true);
    LoadFromFile(temp);
}

// ---- contract

void TfrImages::SetFocus() {
    EhDBGrid->setFocus();
}

void TfrImages::SetReadOnly(bool value) {
    TAbsEditFrame::SetReadOnly(value);
    ActionListUpdate();
}

void TfrImages::DataRefresh() {
    if (!initialized_) return;
    pfImageKind->reopen(true);
}

void TfrImages::RestoreLayout(TConfigItem* node) {
    TAbsEditFrame::RestoreLayout(node);
    if (!node) return;
    if (node->IsExists(QStringLiteral("KindWidth"))) {
        const int w = node->ItemByName(QStringLiteral("KindWidth"))->GetAsInteger();
        if (w > 0) Splitter->setSizes({w, qMax(1, Splitter->width() - w)});
    }
    if (node->IsExists(QStringLiteral("Stretch"))) {
        stretch_ = node->ItemByName(QStringLiteral("Stretch"))->GetAsBoolean();
        brbStretch->setChecked(stretch_);
        siStretch->setChecked(stretch_);
        sbImageResize();
    }
}

void TfrImages::SaveLayout(TConfigItem* node) {
    TAbsEditFrame::SaveLayout(node);
    if (!node) return;
    node->ItemByName(QStringLiteral("KindWidth"))->SetAsInteger(Splitter->sizes().value(0));
    node->ItemByName(QStringLiteral("Stretch"))->SetAsBoolean(stretch_);
}

void TfrImages::FormClose() {
    if (pfImage->inEditMode()) guard([this] { pfImage->cancel(); });
    guard([this] { pfImage->close(); });
    guard([this] { pfImageKind->close(); });
    if (pfTransaction && pfTransaction->active()) guard([this] { pfTransaction->commit(); });
    TAbsEditFrame::FormClose();
}

bool TfrImages::eventFilter(QObject* watched, QEvent* event) {
    if (watched == sbImage && event->type() == QEvent::Resize && stretch_) guard([this] { sbImageResize(); });
    return TAbsEditFrame::eventFilter(watched, event);
}

FRAMES_REGISTER(TfrImages, "media");

} // namespace frames

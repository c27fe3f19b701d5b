#include "frames/core/Registry.h"
#include "frames/media/TY_Images.h"
#include "platform/db/DataSet.h"
#include "platform/db/Query.h"
#include "platform/db/Transaction.h"
#include "tests/support/DbFixture.h"
#include "tests/support/ImagesHost.h"
#include <dlfcn.h>
#include <QAction>
#include <QBuffer>
#include <QClipboard>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QGroupBox>
#include <QGuiApplication>
#include <QImage>
#include <QLabel>
#include <QMimeData>
#include <QSet>
#include <QTemporaryDir>

using namespace frames;

namespace {

const QString NoPages = QStringLiteral(" <Для объекта не задано ни одной страницы> ");

class Images : public test::DbTest {
protected:
    void SetUp() override {
        DbTest::SetUp();
        // The host again, now with the image database beside the test's database.
        const QString profile = host->profilePath;
        host.reset();
        auto h = std::make_unique<test::ImagesTestHost>(databasePath());
        h->profilePath = profile;
        h->openImageDatabase(test::copyDemoImageDatabase(databasePath()));
        images = h.get();
        host = std::move(h);
    }
    QVariantList imageRow(const QString& sql) const {
        return test::firstRow(images->imageDatabase.get(), sql);
    }

    // The pages of a payment document, as the workbench's document dialog shows them.
    std::unique_ptr<TfrImages> make(int doc) {
        std::unique_ptr<TfrImages> f(
            qobject_cast<TfrImages*>(Registry::instance().create("TfrImages", &top)));
        EXPECT_NE(f, nullptr);
        f->TableName = "PAYMENT_DOC_IMAGES";
        f->KeyFieldName = "ID_PAYMENT_DOC";
        f->KeyValue = doc;
        f->pfImageKind->setSelectSql("select ID, NAME from IMAGE_KINDS order by ID");
        f->Init();
        return f;
    }
    // Moves the kind list to the kind of that ID.
    static void kind(TfrImages* f, int id) {
        for (f->pfImageKind->first(); !f->pfImageKind->eof(); f->pfImageKind->next())
            if (f->pfImageKind->fieldByName("ID")->value().toInt() == id) return;
        ADD_FAILURE() << "no kind " << id;
    }
    QVariantList stored(int doc, int kind, int page) const {
        return imageRow(
            QStringLiteral("select IMAGE_FORMAT, IMAGE from PAYMENT_DOC_IMAGES where ID_PAYMENT_DOC=%1 "
                           "and IMAGE_KIND=%2 and PAGE_NUMBER=%3")
                .arg(doc)
                .arg(kind)
                .arg(page));
    }
    QList<int> pages(int doc, int kind) const {
        QList<int> r;
        for (int n = 1; n <= 10; ++n)
            if (!stored(doc, kind, n).isEmpty()) r << n;
        return r;
    }
    QStringList leftovers() const { return QDir(host->profilePath).entryList({"TyImage.*"}, QDir::Files); }
    static QString caption(TfrImages* f) { return f->gbImage->title(); }
    // A page of an object that had none, current in the frame.
    void addPage(TfrImages* f) {
        f->aAddPage->trigger();
        ASSERT_GE(f->PageCount, 1);
    }
    QString write(const QString& name, const QByteArray& data) {
        const QString path = files.filePath(name);
        QFile f(path);
        EXPECT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(data);
        return path;
    }
    static QByteArray encode(const QImage& img, const char* format) {
        QByteArray bytes;
        QBuffer b(&bytes);
        b.open(QIODevice::WriteOnly);
        img.save(&b, format);
        return bytes;
    }
    static QImage sample(int w, int h) {
        QImage img(w, h, QImage::Format_RGB32);
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) img.setPixel(x, y, qRgb(x * 255 / w, y * 255 / h, 128));
        return img;
    }

    test::ImagesTestHost* images = nullptr;
    QWidget top;
    QTemporaryDir files;
};

// The kinds and pages of the demo documents: a bitmap, a JPEG and an icon under one kind, navigation
// within the kind, a kind without pages, a page stored without a known format (read as a
// bitmap) and a metafile shown as a placeholder.
TEST_F(Images, KindsPagesAndFormatsOfTheDemoDocuments) {
    auto f = make(1);
    EXPECT_EQ(f->pfImageKind->recordCount(), 4);
    EXPECT_EQ(f->PageCount, 3);
    EXPECT_EQ(caption(f.get()), " Страница 1 из 3 ");
    EXPECT_EQ(f->Picture().cls, ifBitmap);
    EXPECT_EQ(f->Picture().image.size(), QSize(120, 160));
    EXPECT_FALSE(f->aFirst->isEnabled());
    EXPECT_FALSE(f->aPrevious->isEnabled());
    EXPECT_TRUE(f->aNext->isEnabled());

    f->aNext->trigger();
    EXPECT_EQ(caption(f.get()), " Страница 2 из 3 ");
    EXPECT_EQ(f->Picture().cls, ifJpeg);
    EXPECT_EQ(f->Picture().image.size(), QSize(240, 320));
    EXPECT_TRUE(f->aFirst->isEnabled() && f->aPrevious->isEnabled() && f->aNext->isEnabled() &&
                f->aLast->isEnabled());
    f->aLast->trigger();
    EXPECT_EQ(f->CurrentPage, 3);
    EXPECT_EQ(f->Picture().cls, ifIcon);
    EXPECT_EQ(f->Picture().image.size(), QSize(32, 32));
    EXPECT_FALSE(f->aNext->isEnabled());
    EXPECT_FALSE(f->aLast->isEnabled());
    f->aFirst->trigger();
    EXPECT_EQ(f->CurrentPage, 1);

    // A kind without pages: the caption says so, nothing is shown, only "add" is offered.
    kind(f.get(), 2);
    EXPECT_EQ(f->PageCount, 0);
    EXPECT_EQ(caption(f.get()), NoPages);
    EXPECT_TRUE(f->Picture().empty());
    EXPECT_TRUE(f->aAddPage->isEnabled());
    for (QAction* a :
         {f->aDelPage, f->aFirst, f->aPrevious, f->aNext, f->aLast, f->aLoadFromFile, f->aSaveToFile,
          f->aGetImageFromScanner, f->aPasteImage, f->aCutImage, f->aCopyImage, f->aClearImage})
        EXPECT_FALSE(a->isEnabled()) << a->objectName().toStdString();
    kind(f.get(), 3);
    EXPECT_EQ(f->PageCount, 1);
    EXPECT_EQ(f->Picture().cls, ifJpeg);

    // Pages 1 and 3 (2 was deleted), the second stored with format -1: read as a bitmap.
    auto two = make(2);
    EXPECT_EQ(two->PageCount, 2);
    two->aNext->trigger();
    EXPECT_EQ(caption(two.get()), " Страница 2 из 2 ");
    EXPECT_EQ(two->PageNumber(), 3);
    EXPECT_EQ(two->CurrentFormat(), -1);
    EXPECT_EQ(two->Picture().cls, ifBitmap);
    EXPECT_FALSE(two->Picture().image.isNull());
    EXPECT_EQ(TfrImages::SaveExtension(two->CurrentFormat()), ".bmp");
    EXPECT_EQ(TfrImages::SaveFilter(two->CurrentFormat()), "Bitmaps (*.bmp)|*.bmp|All (*.*)|*.*");

    // A metafile: kept as it is, shown as a placeholder that says why.
    auto three = make(3);
    kind(three.get(), 2);
    EXPECT_EQ(three->Picture().cls, ifMetafile);
    EXPECT_TRUE(three->Picture().image.isNull());
    EXPECT_FALSE(three->iImage->pixmap().isNull());
    EXPECT_EQ(three->DefaultFileName(), "PAYMENT_DOC_IMAGES_3_Платёжное-поручение_1.wmf");
    const QString saved = files.filePath("page.wmf");
    three->SaveToFile(saved);
    QFile file(saved);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), stored(3, 2, 1).value(1).toByteArray());
    EXPECT_TRUE(leftovers().isEmpty()) << leftovers().join(", ").toStdString();
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("; ").toStdString();
}

// Each format a user loads is stored as its file with its code, comes back the same picture in a
// frame opened afresh and is saved to the bytes it was loaded from. The contents decide when a
// file's name does not fit them; formats without a code of their own are kept as bitmaps.
TEST_F(Images, LoadSaveRoundTripStoresTheFormatCode) {
    const QImage img = sample(40, 30);
    struct Case {
        QString file;
        QByteArray data;
        int code;
    };
    const QByteArray emf = [] {
        QByteArray d = QByteArray::fromHex("01000000") + QByteArray(36, '\0') + " EMF" + QByteArray(44, '\1');
        return d;
    }();
    const QList<Case> cases = {
        {"a.bmp", encode(img, "BMP"), ifBitmap},
        {"b.jpg", encode(img, "JPG"), ifJpeg},
        {"c.ico", encode(img.scaled(32, 32), "ICO"), ifIcon},
        {"d.emf", emf, ifEnhMetafile},
        {"e.wmf", QByteArray::fromHex("d7cdc69a000000000000780a00") + QByteArray(30, '\0'), ifMetafile},
        {"f.bmp", encode(img, "JPG"), ifJpeg}, // a JPEG under a bitmap's name
    };
    {
        auto f = make(5); // a document without pages
        EXPECT_EQ(caption(f.get()), NoPages);
        for (const Case& c : cases) {
            addPage(f.get());
            f->LoadFromFile(write(c.file, c.data));
            const QVariantList row = stored(5, 1, f->PageNumber());
            EXPECT_EQ(row.value(0).toInt(), c.code) << c.file.toStdString();
            EXPECT_EQ(row.value(1).toByteArray(), c.data) << c.file.toStdString();
        }
        // PNG has no code: stored as a bitmap of the same picture.
        addPage(f.get());
        f->LoadFromFile(write("g.png", encode(img, "PNG")));
        const QVariantList png = stored(5, 1, f->PageNumber());
        EXPECT_EQ(png.value(0).toInt(), ifBitmap);
        EXPECT_EQ(QImage::fromData(png.value(1).toByteArray(), "BMP").convertToFormat(QImage::Format_RGB32),
                  img.convertToFormat(QImage::Format_RGB32));
        // Not a picture: refused, the page keeps what it had.
        addPage(f.get());
        const int before = host->errors().size();
        EXPECT_THROW(f->LoadFromFile(write("h.jpg", "not a picture")), std::runtime_error);
        EXPECT_EQ(host->errors().size(), before);
        EXPECT_TRUE(stored(5, 1, f->PageNumber()).value(1).isNull());
        f->FormClose();
    }
    auto f = make(5);
    EXPECT_EQ(f->PageCount, cases.size() + 2);
    for (int i = 0; i < cases.size(); ++i) {
        if (i) f->aNext->trigger();
        const Case& c = cases[i];
        EXPECT_EQ(f->Picture().cls, c.code) << c.file.toStdString();
        if (c.code != ifEnhMetafile && c.code != ifMetafile) {
            EXPECT_EQ(f->Picture().image.size(), c.code == ifIcon ? QSize(32, 32) : img.size())
                << c.file.toStdString();
        }
        const QString out =
            files.filePath("out" + QString::number(i) + TfrImages::SaveExtension(f->CurrentFormat()));
        f->SaveToFile(out);
        QFile back(out);
        ASSERT_TRUE(back.open(QIODevice::ReadOnly));
        EXPECT_EQ(back.readAll(), c.data) << c.file.toStdString();
    }
    EXPECT_EQ(TfrImages::SaveFilter(ifJpeg), "JPEG Image File (*.jpg)|*.jpg|All (*.*)|*.*");
    EXPECT_EQ(TfrImages::SaveFilter(ifEnhMetafile), "Enhanced Metafiles (*.emf)|*.emf|All (*.*)|*.*");
    EXPECT_TRUE(leftovers().isEmpty()) << leftovers().join(", ").toStdString();
}

// A deleted page leaves its number: the pages after it keep theirs and stay reachable, a new
// page comes after the last; cancelling the question deletes nothing; "clear all" takes every
// page of every kind of the object and nothing of another object.
TEST_F(Images, DeletedPageLeavesTheOthersTheirNumbers) {
    auto f = make(1);
    f->aNext->trigger();
    images->confirmations = {false};
    f->aDelPage->trigger();
    EXPECT_EQ(pages(1, 1), (QList<int>{1, 2, 3}));
    ASSERT_EQ(host->messages.size(), 1u);
    EXPECT_EQ(host->messages[0].kind, "confirm");
    EXPECT_EQ(host->messages[0].text, "Вы действительно хотите удалить текущую страницу?");
    EXPECT_EQ(host->messages[0].caption, "Удаление");

    f->aDelPage->trigger(); // OK
    EXPECT_EQ(pages(1, 1), (QList<int>{1, 3}));
    EXPECT_EQ(f->PageCount, 2);
    EXPECT_EQ(f->CurrentPage, 1);
    f->aLast->trigger();
    EXPECT_EQ(f->PageNumber(), 3);
    EXPECT_EQ(f->Picture().cls, ifIcon); // page 3 as it was

    f->aAddPage->trigger();
    EXPECT_EQ(pages(1, 1), (QList<int>{1, 3, 4}));
    EXPECT_EQ(caption(f.get()), " Страница 3 из 3 ");
    EXPECT_TRUE(f->Picture().empty());

    // Read-only: nothing that changes pages is offered.
    f->SetReadOnly(true);
    for (QAction* a : {f->aAddPage, f->aDelPage, f->aLoadFromFile, f->aPasteImage, f->ClearAllAction})
        EXPECT_FALSE(a->isEnabled()) << a->objectName().toStdString();
    f->SetReadOnly(false);

    f->ClearAllAction->trigger();
    EXPECT_EQ(imageRow("select count(*) from PAYMENT_DOC_IMAGES where ID_PAYMENT_DOC=1").value(0).toInt(), 0);
    EXPECT_EQ(imageRow("select count(*) from PAYMENT_DOC_IMAGES where ID_PAYMENT_DOC=2").value(0).toInt(), 2);
    EXPECT_EQ(caption(f.get()), NoPages);
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("; ").toStdString();
}

// Copy puts the picture on the clipboard; paste stores what is there as a bitmap (code 0) even
// when it came from a JPEG; cut and clear empty the stored image (code -1). Print puts the page
// on the printer (here a PDF file).
TEST_F(Images, ClipboardCopyPasteCutClearAndPrint) {
    auto f = make(1);
    f->aNext->trigger(); // the JPEG page
    const QImage jpeg = f->Picture().image;
    f->aCopyImage->trigger();
    EXPECT_EQ(QGuiApplication::clipboard()->image().size(), jpeg.size());

    QTemporaryDir printed;
    f->PrintFile = printed.filePath("page.pdf");
    ASSERT_TRUE(f->aPrintAction->isEnabled());
    f->aPrintAction->trigger();
    QFile pdf(f->PrintFile);
    ASSERT_TRUE(pdf.open(QIODevice::ReadOnly));
    EXPECT_TRUE(pdf.read(5) == "%PDF-");
    EXPECT_GT(pdf.size(), 1000);

    auto other = make(4);
    addPage(other.get());
    other->aPasteImage->trigger();
    QVariantList row = stored(4, 1, 1);
    EXPECT_EQ(row.value(0).toInt(), ifBitmap);
    const QImage pasted = QImage::fromData(row.value(1).toByteArray(), "BMP");
    EXPECT_EQ(pasted.size(), jpeg.size());
    EXPECT_EQ(pasted.convertToFormat(QImage::Format_RGB32).pixel(10, 10),
              jpeg.convertToFormat(QImage::Format_RGB32).pixel(10, 10));

    QGuiApplication::clipboard()->clear();
    other->aCutImage->trigger();
    EXPECT_EQ(QGuiApplication::clipboard()->image().size(), jpeg.size());
    row = stored(4, 1, 1);
    EXPECT_EQ(row.value(0).toInt(), -1);
    EXPECT_TRUE(row.value(1).isNull());
    EXPECT_TRUE(other->Picture().empty());

    // Nothing to paste: said, nothing stored.
    QGuiApplication::clipboard()->clear();
    other->aPasteImage->trigger();
    EXPECT_TRUE(stored(4, 1, 1).value(1).isNull());
    EXPECT_EQ(host->warnings(), QStringList{"В буфере обмена нет изображения."});

    f->aClearImage->trigger();
    row = stored(1, 1, 2);
    EXPECT_EQ(row.value(0).toInt(), -1);
    EXPECT_TRUE(row.value(1).isNull());
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("; ").toStdString();
}

// ---- the scanner module

class Scanner : public Images {
protected:
    // A SANE configuration of its own: dll.conf lists backends (none: no device at all).
    void configure(const QString& backends) {
        ASSERT_TRUE(sane.isValid());
        QFile dll(sane.filePath("dll.conf"));
        ASSERT_TRUE(dll.open(QIODevice::WriteOnly));
        dll.write(backends.toUtf8());
        // The test device: a colour pattern of 80 x 100 mm at 50 dpi.
        QFile test(sane.filePath("test.conf"));
        ASSERT_TRUE(test.open(QIODevice::WriteOnly));
        test.write(
            "number_of_devices 1\nmode Color\ndepth 8\nhand-scanner false\nthree-pass false\n"
            "three-pass-order RGB\nresolution_min 1.0\nresolution_max 1200.0\nresolution_quant 1.0\n"
            "resolution 50.0\ntest-picture \"Color pattern\"\ninvert-endianess false\nread-limit false\n"
            "read-limit-size 1\nread-delay false\nread-delay-duration 1000\nread-status-code \"Default\"\n"
            "fuzzy-parameters false\nppl-loss 0\nnon-blocking false\nselect-fd false\n"
            "enable-test-options false\ngeometry_min 0.0\ngeometry_max 200.0\ngeometry_quant 1.0\n"
            "tl_x 0.0\ntl_y 0.0\nbr_x 80.0\nbr_y 100.0\n");
        qputenv("SANE_CONFIG_DIR", QFile::encodeName(sane.path())); // this folder only
        qunsetenv("IMGSCAN_DEVICE");
        keepSaneMapped();
    }
    // SANE and its test backend keep a few strings until the process ends; the module and SANE
    // unload them after each scan, and a leak report could then not say whose they are. Pinned
    // here, they stay mapped and the sanitizer build's suppression names them.
    static void keepSaneMapped() {
        for (const char* lib : {"libsane.so.1", "/usr/lib/x86_64-linux-gnu/sane/libsane-test.so.1"})
            dlopen(lib, RTLD_NOW | RTLD_NODELETE);
    }
    // Scans into the current page of a new page of document 4.
    std::unique_ptr<TfrImages> scan(const QString& module) {
        auto f = make(4);
        f->ScannerModule = module;
        addPage(f.get());
        // A temporary file left from before goes first.
        write("stale", "x");
        QFile::copy(files.filePath("stale"), QDir(host->profilePath).filePath("TyImage.bmp"));
        f->aGetImageFromScanner->trigger();
        return f;
    }
    // The modules as the build leaves them beside the test executables.
    static QString module() {
        return QDir(QCoreApplication::applicationDirPath())
            .absoluteFilePath("../host/BPL_Main/libImgScan.so");
    }
    static QString moduleWithoutEntry() {
        return QDir(QCoreApplication::applicationDirPath()).absoluteFilePath("modules/libImgScanNoEntry.so");
    }
    QTemporaryDir sane;
};

// The module scans SANE's test device into the page: a colour bitmap stored with code 0, shown
// stretched; the temporary file is gone.
TEST_F(Scanner, ScansFromTheTestDevice) {
    configure("test\n");
    auto f = scan(module());
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("; ").toStdString();
    const QVariantList row = stored(4, 1, 1);
    EXPECT_EQ(row.value(0).toInt(), ifBitmap);
    const QImage img = QImage::fromData(row.value(1).toByteArray(), "BMP");
    EXPECT_EQ(img.size(), QSize(157, 196)); // 80 x 100 mm at 50 dpi
    QSet<QRgb> colours;
    for (int x = 0; x < img.width(); x += 4) colours << img.pixel(x, img.height() / 2);
    EXPECT_GT(colours.size(), 3); // a pattern, not a blank page
    EXPECT_EQ(f->Picture().image.size(), img.size());
    EXPECT_TRUE(f->Stretch());
    EXPECT_TRUE(leftovers().isEmpty()) << leftovers().join(", ").toStdString();
}

// No device: "Сканер не найден!" under "Ошибка", nothing stored, no file left.
TEST_F(Scanner, NoDeviceSaysScannerNotFound) {
    configure("");
    auto f = scan(module());
    ASSERT_EQ(host->messages.size(), 1u);
    EXPECT_EQ(host->messages[0].kind, "error");
    EXPECT_EQ(host->messages[0].text, "Сканер не найден!");
    EXPECT_EQ(host->messages[0].caption, "Ошибка");
    EXPECT_TRUE(stored(4, 1, 1).value(1).isNull());
    EXPECT_TRUE(leftovers().isEmpty()) << leftovers().join(", ").toStdString();
}

// A module that is not there, and one without the entry point: the error names what is wrong.
TEST_F(Scanner, MissingModuleOrEntryPoint) {
    configure("test\n");
    const QString missing = files.filePath("BPL_Main/libImgScan.so");
    auto f = scan(missing);
    EXPECT_EQ(host->errors(), QStringList{"Модуль " + missing + " не найден."});
    EXPECT_TRUE(leftovers().isEmpty());

    host->messages.clear();
    auto g = scan(moduleWithoutEntry());
    EXPECT_EQ(
        host->errors(),
        QStringList{"Неверный формат модуля ImgScan.dll. Точка входа (процедура ScanImage) не найдена."});
    EXPECT_TRUE(stored(4, 1, 1).value(1).isNull());
    EXPECT_TRUE(leftovers().isEmpty());
    EXPECT_TRUE(TfrImages::DefaultScannerModule().endsWith("/BPL_Main/libImgScan.so"));
}

} // namespace

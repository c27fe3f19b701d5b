#pragma once
#include "frames/core/AbsEditFrame.h"
#include <QByteArray>
#include <QImage>

class QAction;
class QIcon;
class QGroupBox;
class QMenu;
class QScrollArea;
class QSplitter;
class QToolBar;

namespace frames {
namespace db {
class DataSet;
class DataSource;
class Transaction;
} // namespace db
namespace ui {
class DBGrid;
}

// Graphic format codes of IMAGE_FORMAT.
enum ImageFormat : int {
    ifUnknown = -1, // read as a bitmap
    ifBitmap = 0,
    ifJpeg = 1,
    ifIcon = 2,
    ifEnhMetafile = 3,
    ifMetafile = 4,
};

// A picture as the frame holds it: the bytes of its file (in the format of its class) and, where
// there is a decoder, the decoded image. Metafiles have none here: they are kept and stored as
// they are, and shown as a placeholder.
struct TGraphic {
    ImageFormat cls = ifUnknown; // the graphic's class; ifUnknown: empty
    QByteArray data;
    QImage image;

    bool empty() const { return cls == ifUnknown; }
    bool isMetafile() const { return cls == ifEnhMetafile || cls == ifMetafile; }
    // The graphic of a file's contents; ext (".bmp", ".jpg" …) says which decoder reads it, the
    // contents decide when the extension does not fit them. Empty when nothing can read it.
    static TGraphic fromData(const QByteArray& data, const QString& ext);
    // A picture in memory (pasted): kept as a bitmap.
    static TGraphic fromImage(const QImage& image);
};

// The scanned or loaded pictures of one database object, by image kind (the list on the left) and
// page within the kind (one page shown at a time on the right). They live in the host's image
// database, in a table the owner names (TableName) keyed by the owner's column (KeyFieldName =
// KeyValue) with image_kind, page_number, IMAGE and IMAGE_FORMAT. The owner also gives the kind
// list (pfImageKind's select, ID and NAME) and may give pfImage's select; without one the frame
// reads the page from the table itself. Every change is committed at once.
class TfrImages : public TAbsEditFrame {
    Q_OBJECT
    Q_PROPERTY(QString TableName MEMBER TableName)
    Q_PROPERTY(QString KeyFieldName MEMBER KeyFieldName)
    Q_PROPERTY(int KeyValue MEMBER KeyValue)
    Q_PROPERTY(QString ScannerModule MEMBER ScannerModule)
    Q_PROPERTY(QString PrintFile MEMBER PrintFile)
public:
    explicit TfrImages(QWidget* parent = nullptr);
    ~TfrImages() override;

    void Init() override;
    void SetFocus() override;
    void SetReadOnly(bool value) override;
    void DataRefresh() override;
    void RestoreLayout(TConfigItem* node) override;
    void SaveLayout(TConfigItem* node) override;
    void FormClose() override;

    // Shows the current row of pfImage.
    virtual void GetImage();
    // Stores the picture shown in the current page with that format code (-1: from its class).
    virtual void SetImage(int format);
    virtual void RefreshPage();
    virtual void RefreshImageKind();

    // ---- action handlers
    virtual void aAddPageExecute();
    virtual void aDelPageExecute();
    virtual void aFirstExecute();
    virtual void aPreviousExecute();
    virtual void aNextExecute();
    virtual void aLastExecute();
    virtual void aLoadFromFileExecute();
    virtual void aSaveToFileExecute();
    virtual void aCutImageExecute();
    virtual void aCopyImageExecute();
    virtual void aPasteImageExecute();
    virtual void aClearImageExecute();
    virtual void aPrintActionExecute();
    virtual void aGetImageFromScannerExecute();
    virtual void ClearAllActionExecute();
    // Enables the actions for the state of the frame (the update handlers of all of them).
    virtual void ActionListUpdate();

    virtual void pfImageKindAfterOpen();
    virtual void pfImageKindEndScroll();
    virtual void pfImageBeforeOpen();
    virtual void sbImageResize();
    virtual void siStretchClick();
    virtual void brbStretchClick();

    // What the file actions do once the dialog gave a file.
    void LoadFromFile(const QString& fileName);
    void SaveToFile(const QString& fileName);
    // The format code of the current row (-1 when none) and what a save offers for it.
    int CurrentFormat() const;
    static QString TempFileName(int format);  // "TyImage.bmp" …
    static QString SaveExtension(int format); // ".bmp" …
    static QString SaveFilter(int format);    // "Bitmaps (*.bmp)|*.bmp|All (*.*)|*.*" …
    // The default file name of a save: table, key, kind and page joined with "_".
    QString DefaultFileName() const;
    // The scanner module loaded by default: BPL_Main/<platform's name of ImgScan> under the
    // application's folder.
    static QString DefaultScannerModule();

    // The stored number of the current page (0 when none): pages keep their numbers when one
    // before them is deleted, so the n-th page is not always page n.
    int PageNumber() const;
    const QList<int>& PageNumbers() const { return numbers_; }

    const TGraphic& Picture() const { return picture_; }
    bool Stretch() const { return stretch_; }
    int CurrentPage = 0;
    int PageCount = 0;

    QString TableName;
    QString KeyFieldName;
    int KeyValue = 0;
    // Path of the scanner module; empty: DefaultScannerModule().
    QString ScannerModule;
    // Where "Печать" puts the page: empty, the printer the print dialog asks for; else this PDF
    // file, without asking.
    QString PrintFile;

    QSplitter* Splitter;
    ui::DBGrid* EhDBGrid;
    db::DataSource* Ds;
    QWidget* pnImages;
    QGroupBox* gbImage;
    QScrollArea* sbImage;
    QMenu* pmImage;
    QLabel* iImage;
    QToolBar* BarDockCtrl;
    QAction* brbStretch;
    QAction* siStretch;
    db::Transaction* pfTransaction;
    db::DataSet* pfImageKind;
    db::DataSet* pfImage;
    QAction *aAddPage, *aDelPage, *aFirst, *aPrevious, *aNext, *aLast, *aLoadFromFile, *aSaveToFile,
        *aCutImage, *aCopyImage, *aPasteImage, *aClearImage, *aPrintAction, *aGetImageFromScanner,
        *ClearAllAction;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QAction* makeAction(const char* name, const QString& caption, const QIcon& icon,
                        void (TfrImages::*handler)());
    // The picture shown and how: empties it, sets it, and draws it into iImage.
    void setPicture(TGraphic g);
    void showPicture();
    // Table and key column as the statements use them (checked: plain names only).
    QString table() const;
    QString keyColumn() const;
    int kindId() const;
    bool kindsEmpty() const;
    // Runs a statement that changes pages in pfTransaction and commits it (retaining).
    void exec(const QString& sql);
    // Deletes the file when it exists.
    static void removeFile(const QString& path);

    QList<int> numbers_; // page numbers of the current object and kind, ascending
    TGraphic picture_;
    bool stretch_ = false;
    bool initialized_ = false;
};

} // namespace frames

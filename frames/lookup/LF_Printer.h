#pragma once
#include "frames/lookup/LF_ItemList.h"

namespace frames {

// The user's default printer, by name; empty means the system's default printer. The printers
// offered are the host configuration's list "Printers" (names separated by ";") when it is set,
// otherwise the print queues that the CUPS command lpstat reports. A stored printer that is no
// longer offered is kept and shown as unavailable.
class TPrinter_LF : public TItemList_LF {
    Q_OBJECT
public:
    explicit TPrinter_LF(QWidget* parent = nullptr);

    QList<Item> ListItems() override;
    void ItemsKeyDown(int& key, Qt::KeyboardModifiers shift) override;
    QString UnlistedText(const QVariant& value) const override;
    // Delete clears the choice (back to the system default); F5 reads the printers again.
    void cbPrinterKeyDown(int& key, Qt::KeyboardModifiers shift);

    // Print queues known to the system and its default queue (empty when it has none). Asks
    // lpstat, when it is installed, and waits at most timeoutMs for its answer.
    static QStringList SystemPrinters(QString* systemDefault, int timeoutMs = 3000);

    QComboBox* cbPrinter;
    // The system's default printer as last read.
    QString SystemDefault;
};

} // namespace frames

#pragma once
#include "platform/db/AbstractDataSet.h"

namespace frames::db {

// An in-memory table with declared fields and the cursor, state and event interface of DataSet.
class MemTable : public AbstractDataSet {
    Q_OBJECT
public:
    explicit MemTable(QObject* parent = nullptr);
    ~MemTable() override;

    // Field definitions take effect at the next open().
    void addFieldDef(const QString& name, FieldType type, int size = 0, int scale = 0);
    void clearFieldDefs();
    // Removes every row (dataset stays open).
    void emptyTable();
    // Convenience: append a row with values in field order, posted at once.
    void appendRecord(const QVariantList& values);

protected:
    void doOpen() override;
    void doClose() override;
    int storageCount() const override;
    QVariant storageValue(int physRow, int column) const override;
    int storePost(int physRow, const std::vector<QVariant>& oldValues,
                  const std::vector<QVariant>& newValues) override;
    void storeDelete(int physRow) override;

private:
    struct Def {
        QString name;
        FieldType type;
        int size, scale;
    };
    std::vector<Def> defs_;
    std::vector<std::vector<QVariant>> rows_;
    std::vector<bool> deleted_;
};

} // namespace frames::db

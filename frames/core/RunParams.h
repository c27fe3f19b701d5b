#pragma once
#include <QString>
#include <QVariant>
#include <cstdint>
#include <memory>
#include <vector>

namespace frames {
namespace db {
class Transaction;
}

// Named, typed parameters handed to a host form.
class TVarParams {
public:
    struct Param {
        QString Name;
        QVariant Value;
    };
    // The parameter of that name (case-insensitive), created when it does not exist yet.
    Param& ByName(const QString& name);
    const Param* Find(const QString& name) const;
    int Count() const { return int(items_.size()); }
    const Param& Item(int i) const { return items_[size_t(i)]; }
    void Clear() { items_.clear(); }

private:
    std::vector<Param> items_;
};

// The parameter block of the module runner, filled in by the form it runs.
struct TRunParams {
    int FormFound = 0;
    QString KeyFieldName;
    QVariant KeyValue;                  // null (invalid) when there is none
    std::shared_ptr<TVarParams> Params; // created by the frame when it needs them
    int KeyInt = -1;
    int ResultInt = 0;
    int Mode = 0;
    bool Flag = false;
    db::Transaction* Transaction = nullptr;

    // The all-ones transaction value that says "not bound to a dataset".
    static db::Transaction* NoTransaction() { return reinterpret_cast<db::Transaction*>(~std::uintptr_t(0)); }
    TVarParams& EnsureParams() {
        if (!Params) Params = std::make_shared<TVarParams>();
        return *Params;
    }
};

// Run constants, set by the host at log-in.
extern int CUR_USER;
extern int CUR_FILIALINDEX;
extern int CUR_SHOPINDEX;
extern int GLOBAL_PAR_SET_FOR;
extern int GLOBAL_PAR_CLASSIF_TYPE;

} // namespace frames

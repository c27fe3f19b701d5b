#include "platform/db/Transaction.h"
#include "platform/db/AnswerWatch.h"
#include "platform/db/Database.h"
#include "platform/db/FbCommon.h"

namespace frames::db {

using namespace Firebird;

Transaction::Transaction(Database* db, TransactionOptions options, QObject* parent)
    : QObject(parent), db_(db), options_(options) {
    if (db_) db_->transactions_.append(this);
}

Transaction::~Transaction() {
    if (handle_) {
        try {
            rollback();
        } catch (...) {
            if (handle_) handle_->release();
            handle_ = nullptr;
        }
    }
    if (db_) db_->transactions_.removeOne(this);
}

void Transaction::start() {
    if (handle_) return;
    if (!db_ || !db_->handle())
        throw Error::configuration(QStringLiteral("Transaction cannot start: the database is not open"));
    using Iso = TransactionOptions::Isolation;
    std::vector<unsigned char> tpb{isc_tpb_version3};
    switch (options_.isolation) {
    case Iso::Concurrency:
        tpb.push_back(isc_tpb_concurrency);
        break;
    case Iso::Consistency:
        tpb.push_back(isc_tpb_consistency);
        break;
    case Iso::ReadCommitted:
        tpb.push_back(isc_tpb_read_committed);
        tpb.push_back(isc_tpb_no_rec_version);
        break;
    case Iso::ReadCommittedRecVersion:
        tpb.push_back(isc_tpb_read_committed);
        tpb.push_back(isc_tpb_rec_version);
        break;
    }
    tpb.push_back(options_.readOnly ? isc_tpb_read : isc_tpb_write);
    tpb.push_back(options_.wait ? isc_tpb_wait : isc_tpb_nowait);
    if (options_.wait && options_.lockTimeout > 0) {
        const int t = options_.lockTimeout;
        tpb.insert(tpb.end(),
                   {isc_tpb_lock_timeout, 4, (unsigned char)(t & 0xff), (unsigned char)((t >> 8) & 0xff),
                    (unsigned char)((t >> 16) & 0xff), (unsigned char)((t >> 24) & 0xff)});
    }
    const ServerWait wait(db_);
    handle_ = fb::call([&](fb::Status* st) {
        return db_->handle()->startTransaction(st, unsigned(tpb.size()), tpb.data());
    });
}

void Transaction::commit() {
    if (!handle_) return;
    emit ending();
    const ServerWait wait(db_);
    fb::call([&](fb::Status* st) { handle_->commit(st); });
    handle_ = nullptr; // commit released the interface
}

void Transaction::rollback() {
    if (!handle_) return;
    emit ending();
    ITransaction* h = handle_;
    handle_ = nullptr;
    try {
        const ServerWait wait(db_);
        fb::Status st;
        h->rollback(&st);
    } catch (const FbException& e) {
        h->release();
        const Error err = fb::toError(e.getStatus());
        // A transaction on a lost connection is gone anyway.
        if (!err.isConnectionLost()) throw err;
    }
}

void Transaction::commitRetaining() {
    if (!handle_) return;
    const ServerWait wait(db_);
    fb::call([&](fb::Status* st) { handle_->commitRetaining(st); });
}

void Transaction::rollbackRetaining() {
    if (!handle_) return;
    const ServerWait wait(db_);
    fb::call([&](fb::Status* st) { handle_->rollbackRetaining(st); });
}

} // namespace frames::db

#pragma once
#include "host/FrameHostForms.h"
#include <QList>

class QWidget;

namespace workbench {

class HostImpl;

// The clients (table CLIENTS) as a list form whose edit dialog is the client's card: his names
// and contacts in edit frames on their columns, and his postal address (TfrAddress, address kind
// 1 "client", the client's ID_CLIENTS as the object).

// The frames of the card, in the order they are shown.
const QList<EditorSlot>& clientEditors();

// The list form over the clients, open, with a write transaction of its own: a confirmed card
// (the client's row and his address) is written and committed at once. Throws db::Error.
RecordListForm* makeClientList(HostImpl* host, QWidget* parent = nullptr);

} // namespace workbench

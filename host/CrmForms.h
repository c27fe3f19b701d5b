#pragma once
class QWidget;

namespace workbench {

class HostImpl;
class RecordListForm;

// The CRM companies, edited with their characteristics, territories and business spheres.
RecordListForm* makeFirmList(HostImpl* host, QWidget* parent = nullptr);
// The events of the companies, edited with their characteristics.
RecordListForm* makeEventList(HostImpl* host, QWidget* parent = nullptr);

} // namespace workbench

#pragma once
// Lookup frames that differ from TAbs_LF only by their form description (caption, fields, SQL,
// reference form). Q_OBJECT starts a line of its own so that the build's moc scan finds it.
#include "frames/lookup/LF_Abs.h"

namespace frames {

// clang-format off

class TAlgoritm_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TCardKind_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TCardType_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TCursType_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TUser_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };

// clang-format on

} // namespace frames

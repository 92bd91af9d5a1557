// Changes of models.

#ifndef ZYL_MODEL_MODEL_CHANGE_H
#define ZYL_MODEL_MODEL_CHANGE_H

#include "vorlane/model/change.h"
#include "vorlane/model/model.h"

ZYL_CHANGE_FIELD(Model, ZylModelI*, ZylModelI*, getModel)
ZYL_CHANGE_FIELD(Element, ZylExtractableI*, ZylExtractableI*, getElement)
ZYL_CHANGE_FIELD(Elements, ZylExtractableArray, const ZylExtractableArray&, getElements)

/// One element was appended to a model.
class ZYL_EXPORT ZylAddOneToModel final
    : public zyl::MemberChange<zyl::Membership::Joined, zyl::change::Model, zyl::change::Element> {
  ZYL_CHANGE(ZylAddOneToModel, ZylChange)
 public:
  using MemberChange::MemberChange;
};

/// Elements were appended to a model.
class ZYL_EXPORT ZylAddToModel final
    : public zyl::MembersChange<zyl::Membership::Joined, zyl::change::Model,
                                zyl::change::Elements> {
  ZYL_CHANGE(ZylAddToModel, ZylChange)
 public:
  using MembersChange::MembersChange;
};

/// Elements were taken out of a model.
class ZYL_EXPORT ZylRemoveFromModel final
    : public zyl::MembersChange<zyl::Membership::Left, zyl::change::Model, zyl::change::Elements> {
  ZYL_CHANGE(ZylRemoveFromModel, ZylChange)
 public:
  using MembersChange::MembersChange;
};

#endif

// Changes of linear nodes.

#ifndef ZYL_EXPR_LIN_TERM_CHANGE_H
#define ZYL_EXPR_LIN_TERM_CHANGE_H

#include "vorlane/expr/lin_term.h"
#include "vorlane/expr/variable_change.h"

ZYL_CHANGE_FIELD(NumLinTerm, ZylNumLinTermI*, ZylNumLinTermI*, getExpr)
ZYL_CHANGE_FIELD(IntLinTerm, ZylIntLinTermI*, ZylIntLinTermI*, getExpr)

/// A variable joined the node.
class ZYL_EXPORT ZylNumLinTermAddVar final
    : public zyl::MemberChange<zyl::Membership::Joined, zyl::change::NumLinTerm, zyl::change::Var> {
  ZYL_CHANGE(ZylNumLinTermAddVar, ZylChange)
 public:
  using MemberChange::MemberChange;
};

/// A variable's term was removed from the node, or its coefficient replaced.
class ZYL_EXPORT ZylNumLinTermRemoveVar final
    : public zyl::MemberChange<zyl::Membership::Left, zyl::change::NumLinTerm, zyl::change::Var> {
  ZYL_CHANGE(ZylNumLinTermRemoveVar, ZylChange)
 public:
  using MemberChange::MemberChange;
};

/// A variable's term was removed from an integer node.
class ZYL_EXPORT ZylIntLinTermRemoveVar final
    : public zyl::MemberChange<zyl::Membership::Left, zyl::change::IntLinTerm, zyl::change::Var> {
  ZYL_CHANGE(ZylIntLinTermRemoveVar, ZylChange)
 public:
  using MemberChange::MemberChange;
};

#endif

// Intern tables: every distinct content exists once, for as long as somebody outside holds it.
//
//   auto table = Orv::DedupHashTableUnorderedSet::DedupHashTableUnorderedSetIs(true);
//   Thing::Ptr a = intern(table, "x"), b = intern(table, "x");   // a == b, one object
//   a = b = nullptr;                                             // gone, table->members() == 0
//
// 1. `dedup` returns the member that has the given object's content: the object itself, or the one
//    that was there before.
// 2. At most one of the members with equal content can be found. A member whose last outside
//    holder is just letting go counts as absent.
// 3. A table that dies before its members leaves them to their holders, as values that free
//    themselves. REQUIRES: nobody else uses the table or its members while it dies.
//
// Threads: a thread-safe table is used from any thread; no lock is held while a callback runs or a
// reference is dropped. Other tables belong to one thread. REQUIRES: after a fork from several
// threads the child uses no table; a lock may be held by a thread that the child does not have.
#pragma once

#include <functional>
#include <memory>

#include "Mox/Entity.h"
#include "Orv/DedupHandle.h"
#include "Orv/DumpContext.h"

namespace Orv {

class DedupHashTableLifeTimeNotifiee;

class DedupHashTable : public Mox::PtrInterface {
 public:
  using Ptr = Mox::Ptr<DedupHashTable>;
  using PtrConst = Mox::PtrConst<DedupHashTable>;
  static const Mox::Type type;
  const Mox::Type& fwkType() const override { return type; }

  /// The member whose `hash()` is `hash` and whose content is `content`; null when there is none.
  virtual Mox::Ptr<DedupHandle> lookupByContent(const DedupContentHandle& content,
                                                U32 hash) const = 0;
  /// Consumes `object` and returns the member of its content, never null. `object` was never
  /// interned, or is a member of this table; otherwise asserts "dedupState() == ...". Asserts
  /// "dedupHandle" for null. `std::bad_alloc` leaves the table as it was. REQUIRES: only the caller
  /// holds an `object` that was never interned.
  virtual Mox::Ptr<DedupHandle> dedup(Mox::Ptr<DedupHandle> object) = 0;
  /// Installs the notifiee that hears of every insertion and removal; it stays until the table
  /// dies. Asserts "members() == 0 && ..." for a table with members, or with a notifiee already.
  virtual void lifeTimeNotifieeIs(Mox::Ptr<const DedupHashTableLifeTimeNotifiee> notifiee) = 0;

  /// Calls `visit` with each member. REQUIRES: nobody else uses the table meanwhile.
  virtual void visitMembers(const std::function<void(DedupHandle&)>& visit) const = 0;
  /// How many members there are. A removal is counted no more before it has ended: 0 does not say
  /// that nobody is at work in the table or in its notifiee.
  virtual U64 members() const = 0;
  /// Octets of the table itself, without its members.
  virtual U64 octets() const = 0;
  /// Writes `members: 3`.
  void dumpState(const Mox::Ptr<const DumpContext>& context, U32 indent) const;

 protected:
  friend class DedupHandle;
  /// The end of a member; called by the one thread whose release left only the table's references.
  virtual void remove(DedupHandle* member) = 0;

  // The steps in a member's life, for the tables below.
  /// Makes `object` a member. REQUIRES: nobody else knows it yet.
  void enter(DedupHandle& object, bool withNotifier);
  /// Its removal has begun.
  static void leave(DedupHandle& member);
  /// Drops the table's reference to a member that has left.
  static void end(DedupHandle& member);
  /// The table is going away and leaves the member to its holders.
  static void detach(DedupHandle& member);

 private:
  /// Whether the table's reference to a member that is being removed is the only one.
  static bool isLast(const DedupHandle& member) { return member.references() == 1; }
};

/// Hears what enters and leaves a table. Called on the thread that interns or lets go, with no
/// lock held, so it may intern and release.
///
/// Insertion of an object is heard before its removal. Nothing is promised between two objects,
/// even if their contents are equal: the removal of a dying one may be heard after the insertion of
/// its successor.
class DedupHashTableLifeTimeNotifiee : public Mox::PtrInterface {
 public:
  using Ptr = Mox::Ptr<DedupHashTableLifeTimeNotifiee>;
  using PtrConst = Mox::PtrConst<DedupHashTableLifeTimeNotifiee>;
  static const Mox::Type type;
  const Mox::Type& fwkType() const override { return type; }

  /// A member has entered.
  /// REQUIRES: it makes exactly one DedupHandleLifeTimeNotifier for the member, and does not throw:
  /// without a notifier the member could never leave.
  virtual void handleInsert(const Mox::Ptr<DedupHandle>& member) const = 0;
  /// REQUIRES: takes no reference to the dying member, not even for the time of the call.
  virtual void handleRemove(DedupHandle* member) const = 0;
  /// The table dies; its members, which can still be visited, have been left to their holders.
  virtual void handleNotificationStop(const Mox::Ptr<const DedupHashTable>& table) const = 0;

  /// The means for the insertion of one object, above all memory. Destroyed unused when the
  /// object does not enter.
  class PreparedInsert {
   public:
    virtual ~PreparedInsert() = default;
  };
  /// Called before an object enters, with no lock held. It takes what `handlePreparedInsert` will
  /// need, memory above all, or throws; the object then stays outside and nothing has changed.
  /// Takes nothing unless it is overridden.
  virtual std::unique_ptr<PreparedInsert> prepareInsert() const;
  /// As `handleInsert`, which it calls unless it is overridden.
  virtual void handlePreparedInsert(const Mox::Ptr<DedupHandle>& member,
                                    std::unique_ptr<PreparedInsert> prepared) const;
};

/// Follows one member of a table with a notifiee. The reference it holds was taken when the member
/// entered the table; here it is only adopted. It does not keep the member interned, but keeps its
/// memory valid. Asserts "haveLifeTimeNotifier()" when it is made for a member of a table without
/// notifiee, "__null == dedupTable()" when it goes before its member has left the table.
class DedupHandleLifeTimeNotifier
    : public Mox::Entity<DedupHandleLifeTimeNotifier, Mox::PtrInterface> {
 public:
  static const Mox::Type type;

  /// Adopts the reference that stands for a notifier. REQUIRES: not null.
  explicit DedupHandleLifeTimeNotifier(const Mox::Ptr<const DedupHandle>& member);
  ~DedupHandleLifeTimeNotifier() override;
  /// Never null; a reference may no more be taken once it is dying.
  DedupHandle* getDedupedObjectRawPtr() const { return member_; }

 private:
  DedupHandle* member_;
};

}  // namespace Orv

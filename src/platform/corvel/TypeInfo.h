// Run-time type records: an object's exact class is known by the address of its class's record.
//
// A class shows its record by a static function, and its objects by a virtual one:
//
//   class TrPen : public TrBase {
//    public:
//     static const CTypeInfo* GetClassTypeId();
//     const CTypeInfo* GetTypeId() const override { return GetClassTypeId(); }
//   };
//
// The function is defined once, in the source file of the class and not in its header, so that
// every library that is loaded sees the same record:
//
//   const CTypeInfo* TrPen::GetClassTypeId() {
//     static const CTypeInfo record("TrPen", TrBase::GetClassTypeId());
//     return &record;
//   }
//
//   pen.GetTypeId() == TrPen::GetClassTypeId();        // exactly a TrPen
//   pen.GetTypeId()->IsKindOf(TrBase::GetClassTypeId());  // a TrBase or a class derived from it
#pragma once

namespace corvel {

// The record of one class. It is told from others by its address alone, and so can be neither
// copied nor moved; two records of one name are two classes.
class CTypeInfo {
 public:
  // `base` is the record of the class that this one derives from, null for none.
  //
  // REQUIRES: the name and the base outlive the record.
  constexpr explicit CTypeInfo(const char* name, const CTypeInfo* base = nullptr)
      : name_(name), base_(base) {}

  CTypeInfo(const CTypeInfo&) = delete;
  CTypeInfo& operator=(const CTypeInfo&) = delete;

  constexpr const char* Name() const { return name_; }
  constexpr const CTypeInfo* Base() const { return base_; }

  // Whether this is the record `type`, or that of a class derived from it, by any number of steps.
  // Nothing is a kind of null.
  constexpr bool IsKindOf(const CTypeInfo* type) const {
    if (type == nullptr) return false;
    const CTypeInfo* record = this;
    while (record != nullptr && record != type) record = record->base_;
    return record != nullptr;
  }

 private:
  const char* name_;
  const CTypeInfo* base_;
};

}  // namespace corvel

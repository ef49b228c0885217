// What all translator objects have in common. A translator object is one thing that a filter reads
// from a file or writes to it: a pen, a polygon, a lattice.
//
//   void Import(const TrBase& object) {
//     object.AssertValid();
//     if (object.GetTypeId() == TrUniformLattice::GetClassTypeId()) ...  // exactly a lattice
//     kept_ = object.Clone();
//   }
#pragma once

#include <memory>
#include <stdexcept>
#include <string>

#include <corvel/ParamList.h>
#include <corvel/TypeInfo.h>
#include <quillon/Export.h>

namespace quillon {

// Raised by AssertValid: the text tells what is wrong, and where that was found.
class QUILLON_API InvalidObject : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
  ~InvalidObject() override;
};

// The classes derived from this one are values; this part of them can be copied only as a part of
// them. The order of the virtual operations is fixed.
class QUILLON_API TrBase {
 public:
  // The record of this class; each derived class has a function of this name for its own.
  static const corvel::CTypeInfo* GetClassTypeId();

  virtual ~TrBase();

  // The record of the object's exact class. Objects are of one class when the addresses are equal.
  virtual const corvel::CTypeInfo* GetTypeId() const = 0;

  // A copy of the whole object, of the same class.
  virtual std::unique_ptr<TrBase> Clone() const = 0;

  // Raises InvalidObject when the object contradicts itself, with a text that says how.
  virtual void AssertValid() const = 0;

  // The object in a few words, for logs and messages: "Uniform lattice, 3 x 2 x 1 nodes".
  virtual std::wstring Description() const = 0;

  // Named texts that go with the object from file to file.
  const corvel::CParamList& Params() const { return params_; }
  corvel::CParamList& Params() { return params_; }

 protected:
  TrBase() = default;
  TrBase(const TrBase&) = default;
  TrBase(TrBase&&) = default;
  TrBase& operator=(const TrBase&) = default;
  TrBase& operator=(TrBase&&) = default;

  // Raises InvalidObject. `file` is the base name of the source file without extension.
  [[noreturn]] static void ThrowInvalidObject(const char* file, int line, const std::string& why);

 private:
  corvel::CParamList params_;
};

}  // namespace quillon

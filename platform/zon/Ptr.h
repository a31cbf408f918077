// Intrusive reference counting. An object that derives from PtrInterface is
// deleted when the last Ptr to it goes away. Counts are atomic only when the
// runtime is built in its thread-safe mode (ZON_THREAD_SAFE_PTR).
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <type_traits>
#include <utility>

#ifdef ZON_THREAD_SAFE_PTR
#include <atomic>
#endif

#include "zon/Exception.h"

namespace Zon {

class PtrInterface {
 public:
   PtrInterface() noexcept = default;
   // A copy is a new object: it starts with no references of its own.
   PtrInterface(PtrInterface const &) noexcept {}
   PtrInterface & operator=(PtrInterface const &) noexcept { return *this; }

   void ref() const noexcept { ++refs_; }
   void unref() const noexcept {
      if (--refs_ == 0) {
         delete this;
      }
   }
   std::uint32_t references() const noexcept { return refs_; }

 protected:
   virtual ~PtrInterface() = default;

 private:
#ifdef ZON_THREAD_SAFE_PTR
   mutable std::atomic<std::uint32_t> refs_{0};
#else
   mutable std::uint32_t refs_ = 0;
#endif
};

template <typename T>
class Ptr {
 public:
   using element_type = T;

   Ptr() noexcept = default;
   Ptr(std::nullptr_t) noexcept {}
   Ptr(T * p) noexcept : p_(p) { acquire(); }
   Ptr(Ptr const & o) noexcept : p_(o.p_) { acquire(); }
   Ptr(Ptr && o) noexcept : p_(std::exchange(o.p_, nullptr)) {}
   template <typename U, typename = std::enable_if_t<std::is_convertible_v<U *, T *>>>
   Ptr(Ptr<U> const & o) noexcept : p_(o.ptr()) { acquire(); }
   template <typename U, typename = std::enable_if_t<std::is_convertible_v<U *, T *>>>
   Ptr(Ptr<U> && o) noexcept : p_(o.release()) {}
   ~Ptr() { drop(); }

   Ptr & operator=(Ptr const & o) noexcept {
      Ptr(o).swap(*this);
      return *this;
   }
   Ptr & operator=(Ptr && o) noexcept {
      Ptr(std::move(o)).swap(*this);
      return *this;
   }
   Ptr & operator=(std::nullptr_t) noexcept {
      drop();
      p_ = nullptr;
      return *this;
   }

   T * ptr() const noexcept { return p_; }
   T * operator->() const noexcept { return p_; }
   T & operator*() const noexcept { return *p_; }
   explicit operator bool() const noexcept { return p_ != nullptr; }

   // Gives up ownership of one reference without dropping it.
   T * release() noexcept { return std::exchange(p_, nullptr); }
   void swap(Ptr & o) noexcept { std::swap(p_, o.p_); }

   template <typename U>
   bool operator==(Ptr<U> const & o) const noexcept { return p_ == o.ptr(); }
   bool operator==(std::nullptr_t) const noexcept { return p_ == nullptr; }

 private:
   void acquire() const noexcept {
      if (p_) {
         p_->ref();
      }
   }
   void drop() noexcept {
      if (p_) {
         p_->unref();
      }
   }
   T * p_ = nullptr;
};

template <typename T, typename... Args>
Ptr<T> makePtr(Args &&... args) {
   return Ptr<T>(new T(std::forward<Args>(args)...));
}

template <typename T, typename U>
Ptr<T> ptrCast(Ptr<U> const & p) noexcept {
   return Ptr<T>(static_cast<T *>(p.ptr()));
}

template <typename T, typename U>
Ptr<T> dynamicPtrCast(Ptr<U> const & p) noexcept {
   return Ptr<T>(dynamic_cast<T *>(p.ptr()));
}

// A factory's result: a pointer that must not be null. A null one raises the
// runtime's range error.
template <typename T>
Ptr<T> validPtr(Ptr<T> p) {
   if (!p) {
      throw RangeException("null ValidPtr");
   }
   return p;
}

} // namespace Zon

template <typename T>
struct std::hash<Zon::Ptr<T>> {
   std::size_t operator()(Zon::Ptr<T> const & p) const noexcept { return std::hash<T *>()(p.ptr()); }
};

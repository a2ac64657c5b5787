#pragma once

namespace kelvane {

/// Keeps a flag true for as long as it lives.
class Raised {
  public:
    explicit Raised(bool& flag) : flag_(flag) { flag_ = true; }
    Raised(const Raised&) = delete;
    Raised& operator=(const Raised&) = delete;
    ~Raised() { flag_ = false; }

  private:
    bool& flag_;
};

}  // namespace kelvane

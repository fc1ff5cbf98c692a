#include "zyn/platform/object.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace zyn::platform {
namespace {

// A minimal class following the library's object pattern.
class TSample : public TPersistent {
 public:
  int FValue = 0;
  TNotifyEvent FOnChange;

  void Assign(const TPersistent& Source) override {
    if (const auto* s = dynamic_cast<const TSample*>(&Source)) {
      FValue = s->FValue;
      FOnChange = s->FOnChange;
    } else {
      TPersistent::Assign(Source);
    }
  }

 protected:
  void AssignTo(TPersistent& Dest) const override {
    if (InheritsFrom<TSample>(Dest)) {
      Dest.Assign(*this);
    } else {
      TPersistent::AssignTo(Dest);
    }
  }
};

class TUnrelated : public TPersistent {};

// Records its own destruction in a shared log.
class TLogged : public TComponent {
 public:
  TLogged(TComponent* owner, std::string tag, std::vector<std::string>& log)
      : TComponent(owner), tag_(std::move(tag)), log_(log) {}
  ~TLogged() override { log_.push_back(tag_); }

 private:
  std::string tag_;
  std::vector<std::string>& log_;
};

TEST(ObjectTest, ClassNameIsUnqualified) {
  TSample sample;
  TComponent component;
  EXPECT_EQ(sample.ClassName(), u"TSample");
  EXPECT_EQ(component.ClassName(), u"TComponent");
  const TObject& as_base = sample;
  EXPECT_EQ(as_base.ClassName(), u"TSample");
  EXPECT_TRUE(InheritsFrom<TPersistent>(sample));
  EXPECT_FALSE(InheritsFrom<TComponent>(sample));
}

// The message of the EConvertError that `assign` raises.
template <typename F>
std::u16string ConvertError(F assign) {
  try {
    assign();
  } catch (const EConvertError& e) {
    return e.Message();
  }
  return u"no exception";
}

TEST(ObjectTest, AssignBetweenUnrelatedClassesFailsAndChangesNothing) {
  TSample sample;
  sample.FValue = 5;
  TUnrelated other;
  EXPECT_EQ(ConvertError([&] { sample.Assign(other); }),
            u"Cannot assign a TUnrelated to a TSample");
  EXPECT_EQ(sample.FValue, 5);
  EXPECT_EQ(ConvertError([&] { other.Assign(sample); }),
            u"Cannot assign a TSample to a TUnrelated");
}

TEST(ObjectTest, AssignCopiesInBothDirections) {
  TSample a, b;
  a.FValue = 3;
  int fired = 0;
  a.FOnChange = [&fired](TObject*) { ++fired; };
  b.Assign(a);
  EXPECT_EQ(b.FValue, 3);
  ASSERT_TRUE(b.FOnChange);
  EXPECT_EQ(fired, 0);
  // Through the base class: TPersistent::Assign hands over to AssignTo.
  TSample c;
  static_cast<TPersistent&>(c).TPersistent::Assign(a);
  EXPECT_EQ(c.FValue, 3);
}

TEST(ObjectTest, OwnerDestroysWhatItOwnsLastFirst) {
  std::vector<std::string> log;
  {
    auto owner = std::make_unique<TLogged>(nullptr, "owner", log);
    new TLogged(owner.get(), "first", log);
    auto* second = new TLogged(owner.get(), "second", log);
    new TLogged(second, "grandchild", log);
    auto* early = new TLogged(owner.get(), "early", log);
    EXPECT_EQ(owner->ComponentCount(), 3);
    delete early;  // leaves its owner's list
    EXPECT_EQ(owner->ComponentCount(), 2);
    EXPECT_EQ(owner->Components(1), second);
    EXPECT_THROW(owner->Components(2), std::out_of_range);
  }
  const std::vector<std::string> expected = {"early", "owner", "second", "grandchild", "first"};
  EXPECT_EQ(log, expected);
}

TEST(ObjectTest, ExceptionCarriesItsMessageInBothEncodings) {
  const Exception e(u"Component \"\u00c4\": x");
  EXPECT_EQ(e.Message(), u"Component \"\u00c4\": x");
  EXPECT_STREQ(e.what(), "Component \"\xc3\x84\": x");
}

}  // namespace
}  // namespace zyn::platform

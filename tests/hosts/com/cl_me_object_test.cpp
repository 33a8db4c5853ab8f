#include "hosts/com/cl_me_object.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "system/automation/bstr.h"
#include "system/automation/variant.h"
#include "tests/support/component_host.h"

namespace vok::windows {
namespace {

constexpr DISPID kShowQCform = 2, kRunQuery = 3, kGetSetNames = 4;

/// Writes to all that a window may write to, then fails when it is told to.
class WritingWindow : public QueryWindow {
 public:
  explicit WritingWindow(int32_t failure) : failure_(failure) {}
  Value Initialize(std::string& DataBaseFileName) override {
    DataBaseFileName += "\\чужой.mdb";
    if (failure_ != 0) throw Failure(failure_, "the window failed");
    return int16_t{3};
  }
  void Show() override {}

 private:
  int32_t failure_;
};

struct ClMeObjectTest : ::testing::Test, test::ComponentHost {
  ~ClMeObjectTest() override {
    EXPECT_EQ(object->Release(), 0u);
    EXPECT_TRUE(IsModuleFree());
  }

  /// Calls through `IDispatch`; the arguments are given in their order.
  HRESULT Invoke(DISPID member, std::vector<VARIANT> arguments) {
    std::reverse(arguments.begin(), arguments.end());
    DISPPARAMS parameters{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
    result = Variant();
    exception = {};
    return object->Invoke(member, IID_NULL, 0, DISPATCH_METHOD, &parameters, result.Get(),
                          &exception, &bad_argument);
  }

  static VARIANT Reference(VARTYPE type, void* variable) {
    VARIANT reference;
    reference.vt = static_cast<VARTYPE>(VT_BYREF | type);
    reference.byref = variable;
    return reference;
  }

  Publics publics;
  int32_t window_failure = 0;
  clMe me{host, publics, [this](const Host&, Publics&) {
            return std::make_unique<WritingWindow>(window_failure);
          }};
  ClMeObject* object = new ClMeObject(me);
  Variant result;
  EXCEPINFO exception{};
  UINT bad_argument = 99;
};

TEST_F(ClMeObjectTest, IsOneObjectBehindAllItsInterfaces) {
  EXPECT_FALSE(IsModuleFree());
  ComPtr<IUnknown> identity, other_identity;
  ASSERT_EQ(object->QueryInterface(IID_IUnknown, identity.ReceiveVoid()), S_OK);
  for (REFIID id : {IID_IDispatch, kInterfaceId, IID_ISupportErrorInfo}) {
    ComPtr<IUnknown> face, again;
    ASSERT_EQ(object->QueryInterface(id, face.ReceiveVoid()), S_OK);
    ASSERT_EQ(face->QueryInterface(IID_IUnknown, again.ReceiveVoid()), S_OK);
    EXPECT_EQ(again.Get(), identity.Get());
  }
  void* none = this;
  EXPECT_EQ(object->QueryInterface(IID_IStream, &none), E_NOINTERFACE);
  EXPECT_EQ(none, nullptr);
  EXPECT_EQ(object->AddRef(), 3u);  // the identity's and the first one
  EXPECT_EQ(object->Release(), 2u);
}

TEST_F(ClMeObjectTest, EarlyBoundCallersGetTheirVariablesBack) {
  window_failure = 445;
  LONG error = 7, count = 0;
  Variant file{Value("base")};
  EXPECT_EQ(object->ShowQCform(&error, &file.Get()->bstrVal, result.Get()), S_OK);
  EXPECT_EQ(error, 445);
  EXPECT_EQ(FromVariant(*file.Get()), Value("base\\чужой.mdb"));
  EXPECT_EQ(FromVariant(*result.Get()), Value(Value::Array(1)));
  EXPECT_EQ(object->GetSetNames(nullptr, &file.Get()->bstrVal, &count), E_POINTER);
}

TEST_F(ClMeObjectTest, LateBoundCallersGetTheirVariablesBackByAnyReference) {
  window_failure = 445;
  LONG number = 7;
  SHORT small = 7;
  Variant number_variant{Value(int16_t{7})}, file_variant{Value("f")}, file{Value("f")};
  VARIANT nested = Reference(VT_I4, &number);
  const struct {
    const char* name;
    VARIANT error, text;
  } cases[] = {
      {"typed", Reference(VT_I4, &number), Reference(VT_BSTR, &file.Get()->bstrVal)},
      {"narrow", Reference(VT_I2, &small), Reference(VT_VARIANT, file_variant.Get())},
      {"scripting", Reference(VT_VARIANT, number_variant.Get()), *file.Get()},
      {"nested", Reference(VT_VARIANT, &nested), *file.Get()},
  };
  for (const auto& c : cases) {
    number = 7;
    EXPECT_EQ(Invoke(kShowQCform, {c.error, c.text}), S_OK) << c.name;
    EXPECT_EQ(FromVariant(c.error).ToInt32(), 445) << c.name;
    if ((c.text.vt & VT_BYREF) != 0) {
      EXPECT_EQ(FromVariant(c.text).ToText(), "f\\чужой.mdb") << c.name;
    }
  }
  EXPECT_EQ(file_variant.Get()->vt, VT_BSTR);

  window_failure = 0;
  Variant untouched{Value(int16_t{7})};
  EXPECT_EQ(Invoke(kShowQCform, {Reference(VT_VARIANT, untouched.Get()), *file.Get()}), S_OK);
  EXPECT_EQ(untouched.Get()->vt, VT_I2) << "nobody changed it";
}

TEST_F(ClMeObjectTest, CallsThatDoNotFitAreRefused) {
  Variant text{Value("x")}, array{Value(Value::Array(2))};
  const struct {
    DISPID member;
    std::vector<VARIANT> arguments;
    HRESULT code;
  } cases[] = {
      {99, {}, DISP_E_MEMBERNOTFOUND},
      {kRunQuery, {*text.Get(), *text.Get()}, DISP_E_BADPARAMCOUNT},
      {kShowQCform, {*text.Get(), *text.Get()}, DISP_E_TYPEMISMATCH},
      {kRunQuery, {*text.Get(), *text.Get(), *array.Get()}, DISP_E_TYPEMISMATCH},
  };
  for (const auto& c : cases) EXPECT_EQ(Invoke(c.member, c.arguments), c.code) << c.member;
  EXPECT_EQ(bad_argument, 0u);  // counted from the last

  LONG number = 5;
  SAFEARRAY* texts = nullptr;
  for (const VARIANT& variable : {Reference(VT_I4, &number), Reference(VT_ARRAY | VT_BSTR, &texts),
                                  Reference(VT_DISPATCH, nullptr)}) {
    Variant table{Value("Periods")};
    EXPECT_EQ(Invoke(kGetSetNames, {variable, *table.Get()}), DISP_E_TYPEMISMATCH) << variable.vt;
    EXPECT_EQ(bad_argument, 1u);
    EXPECT_TRUE(database.calls.empty()) << "the member ran";
  }
}

TEST_F(ClMeObjectTest, EveryParameterIsGivenOnceByItsPositionOrItsName) {
  Variant text{Value("x")}, number{Value(int32_t{0})};
  const struct {
    std::vector<VARIANT> arguments;  ///< the named ones first, the last of the others next
    std::vector<DISPID> names;
    HRESULT code;
  } cases[] = {
      {{*text.Get(), *number.Get()}, {1, 1}, DISP_E_PARAMNOTFOUND},
      {{*number.Get(), *number.Get()}, {0}, DISP_E_PARAMNOTFOUND},  // once more by its position
      {{*text.Get(), *number.Get()}, {2, 0}, DISP_E_PARAMNOTFOUND},
      {{*text.Get(), *number.Get()}, {-3, 0}, DISP_E_PARAMNOTFOUND},
      {{*text.Get(), *number.Get()}, {1, 0, 0}, DISP_E_BADPARAMCOUNT},
      {{*text.Get(), *number.Get()}, {1}, S_OK},
      {{*text.Get(), *number.Get()}, {1, 0}, S_OK},
  };
  for (auto c : cases) {
    DISPPARAMS parameters{c.arguments.data(), c.names.data(), 2, static_cast<UINT>(c.names.size())};
    for (const auto& [id, code] :
         {std::pair(&IID_NULL, c.code), {&IID_IDispatch, DISP_E_UNKNOWNINTERFACE}}) {
      EXPECT_EQ(object->Invoke(kShowQCform, *id, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr,
                               nullptr),
                code);
    }
  }
}

TEST_F(ClMeObjectTest, NamesAreAskedForWithoutAnInterface) {
  wchar_t version[] = L"Version";
  LPOLESTR names[] = {version};
  DISPID id = 0;
  EXPECT_EQ(object->GetIDsOfNames(IID_IDispatch, names, 1, 0, &id), DISP_E_UNKNOWNINTERFACE);
}

TEST_F(ClMeObjectTest, OnlyGetSetNamesFailsWithItsNumberDescriptionAndSource) {
  Variant table{Value("Nothing")}, names{Value(int32_t{5})};
  EXPECT_EQ(Invoke(kGetSetNames, {Reference(VT_VARIANT, names.Get()), *table.Get()}),
            DISP_E_EXCEPTION);
  EXPECT_EQ(exception.scode, failure_number::kNoTable);
  EXPECT_NE(TakeBstr(exception.bstrDescription), "");
  EXPECT_NE(TakeBstr(exception.bstrSource), "");
  EXPECT_EQ(FromVariant(*names.Get()), Value(int32_t{5}));

  table = Variant(Value("Periods"));
  EXPECT_EQ(Invoke(kGetSetNames, {Reference(VT_VARIANT, names.Get()), *table.Get()}), S_OK);
  EXPECT_EQ(FromVariant(*names.Get()), Value(Value::Array{"2010"}));
  EXPECT_EQ(FromVariant(*result.Get()), Value(int32_t{0}));
}

}  // namespace
}  // namespace vok::windows

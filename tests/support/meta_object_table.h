#pragma once
// Checks a class's own meta-object methods (signals and slots) against an
// expected table: kind, access, normalised signature and parameter names, in
// index order.

#include <gtest/gtest.h>

#include <QMetaMethod>
#include <QMetaObject>
#include <string>
#include <vector>

struct ExpectedMethod {
  QMetaMethod::MethodType kind;
  QMetaMethod::Access access;
  std::string signature;
  std::vector<std::string> parameterNames;
};

inline void expectMethods(const QMetaObject& meta, const std::vector<ExpectedMethod>& expected) {
  const int own = meta.methodCount() - meta.methodOffset();
  ASSERT_EQ(own, static_cast<int>(expected.size())) << meta.className();
  for (int i = 0; i < own; ++i) {
    const QMetaMethod method = meta.method(meta.methodOffset() + i);
    SCOPED_TRACE(std::string(meta.className()) + " method " + std::to_string(i));
    EXPECT_EQ(method.methodSignature().toStdString(), expected[i].signature);
    EXPECT_EQ(method.methodType(), expected[i].kind);
    EXPECT_EQ(method.access(), expected[i].access);
    std::vector<std::string> names;
    for (const QByteArray& name : method.parameterNames()) names.push_back(name.toStdString());
    EXPECT_EQ(names, expected[i].parameterNames);
  }
}

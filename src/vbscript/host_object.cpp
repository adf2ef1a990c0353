// SPDX-License-Identifier: Apache-2.0
#include "vbscript/host_object.h"

#include "vbscript/host_adapter.h"
#include "vbscript/surroundings/errors.h"
#include "vbscript/values/convert.h"
#include "vbscript/values/text.h"

#include <algorithm>

namespace vbscript {

namespace {

std::string lowerName(std::string_view name) {
    std::string out(name);
    std::transform(out.begin(), out.end(), out.begin(), lowerAscii);
    return out;
}

class Values : public HostValues {
  public:
    explicit Values(Runtime& rt) : rt_(rt) {}
    std::string text(const Value& v) override { return joinable(rt_, v).utf8(); }
    double number(const Value& v) override { return toDouble(rt_, v); }

  private:
    Runtime& rt_;
};

} // namespace

HostTable& HostTable::method(std::string_view name, Call f, Takes takes) {
    members_[lowerName(name)] = {std::move(f), {}, takes};
    return *this;
}

HostTable& HostTable::property(std::string_view name, Call read, Put write) {
    members_[lowerName(name)] = {std::move(read), std::move(write), {}};
    return *this;
}

HostTable& HostTable::defaultProperty(std::string_view name) {
    default_ = lowerName(name);
    return *this;
}

const HostTable::Member& HostTable::find(std::string_view name) const {
    static const Member none;
    const auto at = members_.find(name.empty() ? std::string_view(default_) : name);
    return at == members_.end() ? none : at->second;
}

bool HostTable::call(std::string_view member, std::span<const Value> args, HostValues& values,
                     Value& result) {
    const Member& m = find(member);
    admit(m.read != nullptr, m.takes, args.size());
    result = m.read(args, values);
    return true;
}

bool HostTable::assign(std::string_view member, std::span<const Value> args, const Value& v,
                       HostValues& values) {
    const Member& m = find(member);
    admit(m.write != nullptr, m.takes, args.size());
    m.write(v, values);
    return true;
}

void HostAdapter::access(Runtime& rt, Atom member, Access how, std::span<Value> args,
                         Value& result) {
    const std::string name = member == 0 ? std::string() : lowerName(rt.names.text(member));
    Values values(rt);
    bool known = false;
    if (how == Access::Let || how == Access::Set) {
        const auto indexes = args.first(args.size() - 1);
        known = object_->assign(name, {indexes.data(), indexes.size()}, args.back(), values);
    } else {
        known = object_->call(name, {args.data(), args.size()}, values, result);
    }
    if (!known) throw Fault(errors::noSuchMember);
}

bool HostAdapter::elements(Runtime&, Value& list) {
    std::vector<Value> all;
    if (!object_->elements(all)) return false;
    list = arrayOf(std::move(all));
    return true;
}

} // namespace vbscript

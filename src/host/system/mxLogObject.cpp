#include "mxLogObject.h"

namespace mx {

mxLogObject::mxLogObject(int type, const char* category, mxLog* log, const char* origin,
                         bool enabled)
    : type(type), category(category ? category : ""), origin(origin ? origin : ""),
      hasCategory(category != nullptr), hasOrigin(origin != nullptr), log(log),
      enabled(enabled) {}

mxLogObject::~mxLogObject() {
    if (!enabled || !log) {
        return;
    }
    log->write(type, hasCategory ? category.c_str() : nullptr,
               hasOrigin ? origin.c_str() : nullptr, message.str());
}

mxLogObject& mxLogObject::operator<<(const char* text) {
    if (text) {
        message << text;
    }
    return *this;
}

mxLogObject& mxLogObject::operator<<(const std::string& text) {
    message << text;
    return *this;
}

mxLogObject& mxLogObject::operator<<(char value) {
    message << value;
    return *this;
}

mxLogObject& mxLogObject::operator<<(int value) {
    message << value;
    return *this;
}

mxLogObject& mxLogObject::operator<<(unsigned int value) {
    message << value;
    return *this;
}

mxLogObject& mxLogObject::operator<<(long value) {
    message << value;
    return *this;
}

mxLogObject& mxLogObject::operator<<(unsigned long value) {
    message << value;
    return *this;
}

mxLogObject& mxLogObject::operator<<(long long value) {
    message << value;
    return *this;
}

mxLogObject& mxLogObject::operator<<(unsigned long long value) {
    message << value;
    return *this;
}

mxLogObject& mxLogObject::operator<<(double value) {
    message << value;
    return *this;
}

mxLogObject& mxLogObject::operator<<(bool value) {
    message << (value ? "true" : "false");
    return *this;
}

mxLogObject& mxLogObject::operator<<(const void* pointer) {
    message << pointer;
    return *this;
}

std::string mxLogObject::getMessage() const { return message.str(); }

} // namespace mx

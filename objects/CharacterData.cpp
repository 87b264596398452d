#include <trelvo/gom/CharacterData.h>

#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include "objects/MakeObject.h"
#include "objects/WireCodec.h"

namespace trelvo::gom {

CharacterData::~CharacterData() { delete[] m_text; }

SharedPointer<CharacterData> CharacterData::create(const char* text, unsigned int length) {
  if (length == ~0U || (text == nullptr && length != 0)) {
    return {};
  }
  SharedPointer<CharacterData> data = makeObject<CharacterData>();
  std::unique_ptr<char[]> block(new (std::nothrow) char[std::size_t{length} + 1]);
  if (!data || !block) {
    return {};
  }
  if (length != 0) {
    std::memcpy(block.get(), text, length);
  }
  block[length] = '\0';
  data->m_text = block.release();
  data->m_length = length;
  return data;
}

SharedPointer<CharacterData> CharacterData::create(IStream& stream) {
  SharedPointer<CharacterData> data = makeObject<CharacterData>();
  const bool complete = data && data->read(stream);
  return onlyIf(complete, std::move(data));
}

SharedPointer<CharacterData> CharacterData::clone() const { return create(m_text, m_length); }

bool CharacterData::write(IStream& stream) const { return WireCodec::writeTo(*this, stream); }
bool CharacterData::read(IStream& stream) { return WireCodec::readFrom(*this, stream); }

bool CharacterData::operator==(const CharacterData& other) const noexcept {
  if (m_text == nullptr || other.m_text == nullptr) {
    return m_text == other.m_text;
  }
  return m_length == other.m_length && std::memcmp(m_text, other.m_text, m_length) == 0;
}

}  // namespace trelvo::gom

#pragma once

#include <map>
#include <string>
#include <vector>

/// What docs/wire-format.md states, as data.
struct WireFormatPage {
  using Bytes = std::vector<unsigned char>;

  struct Field {
    unsigned int mask;  ///< 0 for a field that is always there.
    std::string type;   ///< "u16", "record 102", "Coverage", ...
  };
  struct Record {
    std::string name;
    unsigned int maskBytes = 0;
    unsigned long long maskLimit = 0;
    std::vector<Field> fields;

    unsigned int allBits() const;
  };
  struct ClassId {
    unsigned short id;
    std::string name;
    bool hasWireForm;
  };
  struct ObjectKey {
    unsigned short key;
    std::string name;
  };

  std::vector<ClassId> classIds;
  std::vector<ObjectKey> objectKeys;
  /// By the type that names them in a field: "record 102", "Coverage".
  std::map<std::string, Record> records;
  /// Tag of each property, by object key and property key.
  std::map<std::pair<unsigned int, unsigned int>, unsigned int> properties;

  static WireFormatPage parse(const std::string& text);

  /// A record with these bits in its mask, and with bytes of its own in each field they name.
  Bytes recordBytes(const std::string& type, unsigned int bits) const;

 private:
  void appendRecord(const Record& record, unsigned int bits, Bytes& bytes) const;
  void appendField(const std::string& type, Bytes& bytes) const;
};

/// The bytes of each `hexdump` block of a page: a line is its offset, two blanks, the bytes, two
/// blanks or more, a remark. A line whose offset is wrong ends the block with no bytes at all.
std::vector<WireFormatPage::Bytes> hexDumps(const std::string& text);

/// The bytes of a text of hexadecimal digits, with or without blanks between them.
WireFormatPage::Bytes bytesOfHex(const std::string& text);

/// The content of a file of the source tree.
std::string sourceFile(const std::string& path);

// SQLCipher: a raw key, pages of 4 KiB, one transaction, its journal in memory; rows of blobs as
// long as a call. With the checksum that it keeps of each page, and without.

#define SQLITE_HAS_CODEC 1
#include <sqlcipher/sqlite3.h>

#include <cstring>
#include <memory>

#include "bench/sealed/Counter.h"
#include "bench/sealed/FileBench.h"

namespace bench {

namespace {

struct Release {
  void operator()(sqlite3* database) const { sqlite3_close(database); }
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  void operator()(sqlite3_blob* blob) const { sqlite3_blob_close(blob); }
};
using Statement = std::unique_ptr<sqlite3_stmt, Release>;
using Blob = std::unique_ptr<sqlite3_blob, Release>;

class Database {
 public:
  Database(const std::string& path, bool checksum) {
    sqlite3* opened = nullptr;
    const bool done = sqlite3_open(path.c_str(), &opened) == SQLITE_OK;
    m_database.reset(opened);
    must(done, "sqlite3_open");
    run("PRAGMA key = \"x'2b7e151628aed2a6abf7158809cf4f3c2b7e151628aed2a6abf7158809cf4f3c'\"");
    run("PRAGMA cipher_page_size = 4096");
    if (!checksum) {
      run("PRAGMA cipher_use_hmac = OFF");
    }
    run("PRAGMA journal_mode = MEMORY");
  }

  void run(const char* statement) {
    must(sqlite3_exec(m_database.get(), statement, nullptr, nullptr, nullptr) == SQLITE_OK,
         statement);
  }
  Statement prepare(const char* text) {
    sqlite3_stmt* statement = nullptr;
    must(sqlite3_prepare_v2(m_database.get(), text, -1, &statement, nullptr) == SQLITE_OK, text);
    return Statement(statement);
  }
  Blob openBlob(sqlite3_int64 row) {
    sqlite3_blob* blob = nullptr;
    must(sqlite3_blob_open(m_database.get(), "main", "pieces", "bytes", row, 1, &blob) == SQLITE_OK,
         "sqlite3_blob_open");
    return Blob(blob);
  }

 private:
  std::unique_ptr<sqlite3, Release> m_database;
};

template <bool kChecksum>
class SqlCipherFile {
 public:
  static constexpr Stored kStored = Stored::Own;

  SqlCipherFile(const std::string& path, std::size_t callSize)
      : m_path(path), m_callSize(callSize) {}

  void write(const Bytes& plain) {
    Database database(m_path, kChecksum);
    database.run("BEGIN");
    database.run("CREATE TABLE pieces (id INTEGER PRIMARY KEY, bytes BLOB)");
    const Statement insert = database.prepare("INSERT INTO pieces (bytes) VALUES (?)");
    for (std::size_t at = 0; at < plain.size(); at += m_callSize) {
      must(sqlite3_bind_blob(insert.get(), 1, plain.data() + at, static_cast<int>(m_callSize),
                             SQLITE_STATIC) == SQLITE_OK &&
               sqlite3_step(insert.get()) == SQLITE_DONE &&
               sqlite3_reset(insert.get()) == SQLITE_OK,
           "INSERT");
    }
    database.run("COMMIT");
  }

  void read(Bytes& plain) {
    Database database(m_path, kChecksum);
    const Statement select = database.prepare("SELECT bytes FROM pieces ORDER BY id");
    for (std::size_t at = 0; at < plain.size(); at += m_callSize) {
      must(sqlite3_step(select.get()) == SQLITE_ROW &&
               sqlite3_column_bytes(select.get(), 0) == static_cast<int>(m_callSize),
           "SELECT");
      std::memcpy(plain.data() + at, sqlite3_column_blob(select.get(), 0), m_callSize);
    }
  }

  void rewrite(const Places& places, const unsigned char* patch) {
    Database database(m_path, kChecksum);
    database.run("BEGIN");
    Blob blob = database.openBlob(1);
    for (const std::size_t place : places) {
      const auto row = static_cast<sqlite3_int64>(place / m_callSize + 1);
      must(sqlite3_blob_reopen(blob.get(), row) == SQLITE_OK &&
               sqlite3_blob_write(blob.get(), patch, kPatchSize,
                                  static_cast<int>(place % m_callSize)) == SQLITE_OK,
           "sqlite3_blob_write");
    }
    blob.reset();
    database.run("COMMIT");
  }

 private:
  std::string m_path;
  std::size_t m_callSize;
};

const bool kRegistered = registerFilePeer<SqlCipherFile<false>, AllOfFile>("SQLCipher") &&
                         registerFilePeer<SqlCipherFile<true>, AllOfFile>("SQLCipher+checksum");

}  // namespace

}  // namespace bench

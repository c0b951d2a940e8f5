#include "store_PageReader.h"

#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "store_PageChecksum.h"

namespace {

const unsigned char kInteriorTable = 0x05, kLeafTable = 0x0D;
const std::size_t kCachedPages = 64;
// Pages a read takes at most: 1 MiB of 64 KiB pages, so that the pages are still in the
// processor's cache when their checksums are computed right after the read. Each page takes up
// to three parts of the read (link, content, checksum) and the last a fourth; IOV_MAX is 1,024.
const std::size_t kRunPages = 16;

std::uint32_t Get2(const unsigned char* p) {
  return (std::uint32_t(p[0]) << 8) | p[1];
}

std::uint32_t Get4(const unsigned char* p) {
  return (std::uint32_t(p[0]) << 24) | (std::uint32_t(p[1]) << 16) | (std::uint32_t(p[2]) << 8) |
         p[3];
}

// A variable-length integer of the file format (1 to 9 bytes, big-endian, 7 bits a byte and 8
// in the ninth) at `p`, not reading past `end`; false when it runs past.
bool Varint(const unsigned char*& p, const unsigned char* end, std::uint64_t& value) {
  value = 0;
  for (int i = 0; i < 9; ++i) {
    if (p >= end) return false;
    const unsigned char byte = *p++;
    if (i == 8) {
      value = (value << 8) | byte;
      return true;
    }
    value = (value << 7) | (byte & 0x7F);
    if (!(byte & 0x80)) return true;
  }
  return true;
}

// The bytes a column of serial type `type` takes in a record.
std::uint64_t SerialSize(std::uint64_t type) {
  static const std::uint64_t fixed[] = {0, 1, 2, 3, 4, 6, 8, 8, 0, 0};
  if (type < 10) return fixed[type];
  if (type < 12) return 0;
  return (type - 12) / 2;
}

}  // namespace

store_PageReader::store_PageReader(int fd, std::int64_t rootPage) : m_fd(fd) {
  unsigned char header[100];
  struct stat st;
  if (fd < 0 || !ReadRaw(header, sizeof header, 0) || ::fstat(fd, &st) != 0) {
    m_fd = -1;
    return;
  }
  m_pageSize = Get2(header + 16) == 1 ? 65536 : Get2(header + 16);
  // Pages end either with nothing reserved (files of earlier releases) or with their checksum.
  const unsigned reserved = header[20];
  if (m_pageSize < 512 || (m_pageSize & (m_pageSize - 1)) ||
      (reserved != 0 && reserved != store_kChecksumBytes)) {
    m_fd = -1;
    return;
  }
  m_checked = reserved == store_kChecksumBytes && store_PageChecks();
  m_usable = m_pageSize - reserved;
  m_pageCount = static_cast<std::uint32_t>(st.st_size / m_pageSize);
  m_root = static_cast<std::uint32_t>(rootPage);
}

bool store_PageReader::FileHoldsSnapshot(const std::string& databasePath) {
  struct stat st;
  if (::stat((databasePath + "-wal").c_str(), &st) != 0) return errno == ENOENT;
  return st.st_size == 0;
}

bool store_PageReader::ReadRaw(void* out, std::size_t bytes, std::int64_t offset) {
  return ::pread(m_fd, out, bytes, offset) == static_cast<ssize_t>(bytes);
}

const std::vector<unsigned char>* store_PageReader::Page(std::uint32_t number) {
  if (number < 1 || number > m_pageCount) return nullptr;
  auto found = m_pages.find(number);
  if (found != m_pages.end()) return &found->second;
  if (m_pages.size() >= kCachedPages) m_pages.clear();
  std::vector<unsigned char> page(m_pageSize);
  if (!ReadRaw(page.data(), m_pageSize, std::int64_t(number - 1) * m_pageSize)) return nullptr;
  // A damaged page sends the caller to SQLite, whose read of the page reports the damage.
  if (m_checked && !store_PageSound(page.data(), m_pageSize, number)) return nullptr;
  return &m_pages.emplace(number, std::move(page)).first->second;
}

bool store_PageReader::FindCell(std::int64_t rowid, const std::vector<unsigned char>*& page,
                                std::size_t& at) {
  std::uint32_t number = m_root;
  for (int depth = 0; depth < 32; ++depth) {
    page = Page(number);
    if (!page) return false;
    const unsigned char* p = page->data();
    const unsigned char* end = p + m_usable;
    const std::size_t header = number == 1 ? 100 : 0;
    const unsigned char kind = p[header];
    const std::size_t cells = Get2(p + header + 3);
    const std::size_t pointers = header + (kind == kInteriorTable ? 12 : 8);
    if ((kind != kInteriorTable && kind != kLeafTable) || pointers + 2 * cells > m_usable)
      return false;
    // The first cell whose key is at least `rowid` (interior pages: keys are the largest rowid of
    // the left child), or the row itself on a leaf.
    std::size_t low = 0, high = cells;
    while (low < high) {
      const std::size_t mid = (low + high) / 2;
      const std::size_t cell = Get2(p + pointers + 2 * mid);
      const unsigned char* q = p + cell;
      std::uint64_t key = 0, size = 0;
      if (cell >= m_usable) return false;
      if (kind == kInteriorTable) {
        if (cell + 4 > m_usable) return false;
        q += 4;
      } else if (!Varint(q, end, size)) {
        return false;
      }
      if (!Varint(q, end, key)) return false;
      if (static_cast<std::int64_t>(key) < rowid)
        low = mid + 1;
      else
        high = mid;
    }
    if (kind == kLeafTable) {
      if (low == cells) return false;
      at = Get2(p + pointers + 2 * low);
      const unsigned char* q = p + at;
      std::uint64_t size = 0, key = 0;
      return at < m_usable && Varint(q, end, size) && Varint(q, end, key) &&
             static_cast<std::int64_t>(key) == rowid;
    }
    if (low == cells) {
      number = Get4(p + header + 8);
    } else {
      const std::size_t cell = Get2(p + pointers + 2 * low);
      if (cell + 4 > m_usable) return false;
      number = Get4(p + cell);
    }
  }
  return false;
}

bool store_PageReader::Start(std::int64_t rowid, int column, void* out, std::size_t bytes,
                             Rest& rest) {
  if (m_fd < 0) return false;
  const std::vector<unsigned char>* page = nullptr;
  std::size_t at = 0;
  if (!FindCell(rowid, page, at)) return false;
  const unsigned char* p = page->data();
  const unsigned char* end = p + m_usable;
  const unsigned char* q = p + at;
  std::uint64_t payload = 0, key = 0;
  if (!Varint(q, end, payload) || !Varint(q, end, key)) return false;
  // The part of the payload kept on the leaf page; the rest follows in a chain of overflow pages.
  const std::uint64_t maxLocal = m_usable - 35, minLocal = (m_usable - 12) * 32 / 255 - 23;
  std::uint64_t local = payload;
  if (payload > maxLocal) {
    const std::uint64_t k = minLocal + (payload - minLocal) % (m_usable - 4);
    local = k <= maxLocal ? k : minLocal;
  }
  const unsigned char* start = q;
  if (start + local + (local < payload ? 4 : 0) > end) return false;
  // The record: its header's serial types give each column's offset.
  std::uint64_t headerSize = 0, offset = 0, type = 0;
  const unsigned char* h = start;
  if (!Varint(h, start + local, headerSize) || headerSize > local) return false;
  offset = headerSize;
  for (int c = 0; c <= column; ++c) {
    if (!Varint(h, start + headerSize, type)) return false;
    if (c < column) offset += SerialSize(type);
  }
  if (type < 12 || type % 2 != 0 || SerialSize(type) != bytes || offset + bytes > payload)
    return false;
  unsigned char* blob = static_cast<unsigned char*>(out);
  const std::size_t inLocal =
      offset < local ? static_cast<std::size_t>(std::min<std::uint64_t>(local - offset, bytes)) : 0;
  std::memcpy(blob, start + offset, inLocal);
  rest.blob = blob;
  rest.done = inLocal;
  rest.bytes = bytes;
  rest.page = inLocal < bytes ? Get4(start + local) : 0;
  return true;
}

bool store_PageReader::CopyRest(const Rest& rest) const {
  std::uint32_t page = rest.page;
  unsigned char* const blob = rest.blob;
  std::size_t done = rest.done;
  const std::size_t bytes = rest.bytes;
  // Overflow pages written in one go follow each other in the file. One read takes a run of
  // pages on that guess, each page's 4-byte link into `links`, its content where it belongs and
  // its checksum (if the file has them) into `sums`; the links then tell how far the guess held,
  // and the chain goes on from the first page that was not the next one. The last page's unused
  // end goes into `spare`, to check it whole.
  const std::size_t content = m_usable - 4;
  const std::size_t reserved = m_pageSize - m_usable;
  unsigned char links[kRunPages][4];
  unsigned char sums[kRunPages][store_kChecksumBytes];
  std::vector<unsigned char> spare;
  struct iovec parts[4 * kRunPages];
  store_PageHash hash;
  while (done < bytes) {
    if (page < 2 || page > m_pageCount) return false;
    const std::size_t left = (bytes - done + content - 1) / content;
    const std::size_t run = std::min<std::size_t>({left, kRunPages, m_pageCount - page + 1});
    std::size_t want = 0, count = 0, spareBytes = 0;
    for (std::size_t i = 0; i < run; ++i) {
      const std::size_t n = std::min(content, bytes - done - i * content);
      parts[count++] = {&links[i], 4};
      parts[count++] = {blob + done + i * content, n};
      want += 4 + n;
      if (m_checked && n < content) {
        spare.resize(content - n);
        spareBytes = content - n;
        parts[count++] = {spare.data(), spareBytes};
        want += spareBytes;
      }
      if (reserved) {
        parts[count++] = {&sums[i], reserved};
        want += reserved;
      }
    }
    if (::preadv(m_fd, parts, static_cast<int>(count), std::int64_t(page - 1) * m_pageSize) !=
        static_cast<ssize_t>(want))
      return false;
    std::size_t good = 1;
    while (good < run && Get4(links[good - 1]) == page + good) ++good;
    if (m_checked) {
      for (std::size_t i = 0; i < good; ++i) {
        const std::size_t n = std::min(content, bytes - done - i * content);
        hash.Start(page + static_cast<std::uint32_t>(i));
        hash.Add(links[i], 4);
        hash.Add(blob + done + i * content, n);
        if (n < content) hash.Add(spare.data(), spareBytes);
        if (!hash.Matches(sums[i])) return false;
      }
    }
    done = std::min(bytes, done + good * content);
    page = Get4(links[good - 1]);
  }
  return true;
}

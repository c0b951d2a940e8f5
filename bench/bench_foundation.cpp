// Measures the foundation's figures against standard-library baselines timed in the same run:
// O(1) copies of sequences, lists, strings and repositories; appending floats one by one; and
// inserting and looking up random string keys in the ordered map.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "bench_Timing.h"
#include "cow_List.h"
#include "odb_Repository.h"
#include "odb_Sequence.h"

namespace {

volatile long g_sink;

template <class T>
double CopyNanoseconds(const T& original) {
  const int copies = 1000000;
  return Best(3,
              [&] {
                long sum = 0;
                for (int i = 0; i < copies; ++i) {
                  T copy(original);
                  T assigned;
                  assigned = copy;
                  sum += reinterpret_cast<long>(&assigned) & 1;
                }
                g_sink = sum;
              }) *
         1e9 / copies;
}

void Copies() {
  std::printf("\nCopy + assign, ns per pair (same time whatever the size means O(1))\n");
  std::printf("%-12s %12s %12s %12s\n", "type", "1", "1,000", "1,000,000");
  double seq[3], list[3], str[3], repo[3];
  int sizes[3] = {1, 1000, 1000000};
  for (int k = 0; k < 3; ++k) {
    int n = sizes[k];
    odb_SequenceFloat s;
    cow_List<int> l;
    odb_Repository<odb_String, int> r;
    for (int i = 0; i < n; ++i) {
      s.append(static_cast<float>(i));
      l.Append(i);
      r.insert(odb_String(i), i);
    }
    odb_String text(std::string(n, 'x').c_str());
    seq[k] = CopyNanoseconds(s);
    list[k] = CopyNanoseconds(l);
    str[k] = CopyNanoseconds(text);
    repo[k] = CopyNanoseconds(r);
  }
  std::printf("%-12s %12.1f %12.1f %12.1f\n", "sequence", seq[0], seq[1], seq[2]);
  std::printf("%-12s %12.1f %12.1f %12.1f\n", "list", list[0], list[1], list[2]);
  std::printf("%-12s %12.1f %12.1f %12.1f\n", "string", str[0], str[1], str[2]);
  std::printf("%-12s %12.1f %12.1f %12.1f\n", "repository", repo[0], repo[1], repo[2]);
}

void Appends() {
  const int n = 10000000;
  double vector = Best(3, [&] {
    std::vector<float> v;
    for (int i = 0; i < n; ++i) v.push_back(static_cast<float>(i));
    g_sink = static_cast<long>(v[n - 1]);
  });
  double sequence = Best(3, [&] {
    odb_SequenceFloat s;
    for (int i = 0; i < n; ++i) s.append(static_cast<float>(i));
    g_sink = static_cast<long>(s[n - 1]);
  });
  std::printf("\nAppend 10,000,000 floats one by one\n");
  std::printf("  std::vector<float>::push_back  %8.1f ms\n", vector * 1e3);
  std::printf("  odb_Sequence<float>::append    %8.1f ms   ratio %.2f (target <= 3)\n",
              sequence * 1e3, sequence / vector);
}

void Keys() {
  const int n = 1000000;
  std::mt19937_64 random(42);
  std::vector<std::string> keys;
  keys.reserve(n);
  const char letters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";
  while (static_cast<int>(keys.size()) < n) {
    std::string key(8 + random() % 17, ' ');
    for (char& c : key) c = letters[random() % 64];
    keys.push_back(key);
  }
  std::vector<odb_String> names;
  for (const std::string& key : keys) names.emplace_back(key.c_str());
  std::vector<int> order(n);
  for (int i = 0; i < n; ++i) order[i] = i;
  std::shuffle(order.begin(), order.end(), random);

  std::map<std::string, int> map;
  double mapInsert = Seconds([&] {
    for (int i = 0; i < n; ++i) map.emplace(keys[i], i);
  });
  double mapFind = Best(3, [&] {
    long sum = 0;
    for (int i : order) sum += map.find(keys[i])->second;
    g_sink = sum;
  });
  cow_Btree<odb_String, int> tree;
  double treeInsert = Seconds([&] {
    for (int i = 0; i < n; ++i) tree.Insert(names[i], i);
  });
  double treeFind = Best(3, [&] {
    long sum = 0;
    for (int i : order) sum += tree.ConstFind(names[i])->value;
    g_sink = sum;
  });
  std::printf("\n1,000,000 random string keys (8 to 24 bytes)\n");
  std::printf("  insert: std::map %7.1f ms   cow_Btree %7.1f ms   ratio %.2f (target <= 2)\n",
              mapInsert * 1e3, treeInsert * 1e3, treeInsert / mapInsert);
  std::printf("  lookup: std::map %7.1f ms   cow_Btree %7.1f ms   ratio %.2f (target <= 2)\n",
              mapFind * 1e3, treeFind * 1e3, treeFind / mapFind);
}

}  // namespace

int main() {
  std::printf("QTVodb foundation benchmark\n");
  Copies();
  Appends();
  Keys();
  return 0;
}

// HDF5 through its C API: one contiguous dataset per array, the mesh in /mesh and each frame in
// /frames/N. HDF5 never syncs the file itself, so a write ends with the file synced after its
// close, as durable as the others.
#include <hdf5.h>

#include <cstdio>
#include <string>

#include "bench_Systems.h"
#include "bench_Timing.h"

namespace {

hid_t Type(const int*) {
  return H5T_NATIVE_INT32;
}
hid_t Type(const float*) {
  return H5T_NATIVE_FLOAT;
}

template <class T>
void Put(hid_t where, const char* name, const std::vector<T>& values, hsize_t width) {
  const hsize_t dims[2] = {values.size() / width, width};
  const hid_t space = H5Screate_simple(width == 1 ? 1 : 2, dims, nullptr);
  const hid_t set =
      H5Dcreate2(where, name, Type(values.data()), space, H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT);
  H5Dwrite(set, Type(values.data()), H5S_ALL, H5S_ALL, H5P_DEFAULT, values.data());
  H5Dclose(set);
  H5Sclose(space);
}

template <class T>
void Get(hid_t where, const char* name, std::vector<T>& into, std::size_t n) {
  into.resize(n);
  const hid_t set = H5Dopen2(where, name, H5P_DEFAULT);
  if (set < 0 || H5Dread(set, Type(into.data()), H5S_ALL, H5S_ALL, H5P_DEFAULT, into.data()) < 0)
    std::fprintf(stderr, "hdf5: cannot read %s\n", name);
  H5Dclose(set);
}

bench_WriteTimes Write(const bench_Model& m, const std::string& path, bool savePerFrame) {
  bench_WriteTimes t;
  hid_t file = -1;
  t.mesh = Seconds([&] {
    file = H5Fcreate(path.c_str(), H5F_ACC_TRUNC, H5P_DEFAULT, H5P_DEFAULT);
    const hid_t mesh = H5Gcreate2(file, "mesh", H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT);
    Put(mesh, "node_labels", m.nodeLabels, 1);
    Put(mesh, "coordinates", m.coordinates, 3);
    Put(mesh, "element_labels", m.elementLabels, 1);
    Put(mesh, "connectivity", m.connectivity, 8);
    H5Gclose(mesh);
  });
  t.frames = Seconds([&] {
    const hid_t frames = H5Gcreate2(file, "frames", H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT);
    for (int i = 0; i < m.frames; ++i) {
      const hid_t frame =
          H5Gcreate2(frames, std::to_string(i).c_str(), H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT);
      Put(frame, "U_labels", m.nodeLabels, 1);
      Put(frame, "U", m.u, 3);
      Put(frame, "S_labels", m.elementLabels, 1);
      Put(frame, "S", m.s, 6);
      H5Gclose(frame);
      if (savePerFrame) {
        H5Fflush(file, H5F_SCOPE_GLOBAL);
        bench_SyncFile(path);
      }
    }
    H5Gclose(frames);
  });
  t.close = Seconds([&] {
    H5Fclose(file);
    bench_SyncFile(path);
  });
  return t;
}

bench_ReadTimes Read(const bench_Shape& m, const std::string& path, bench_ReadBuffers& b) {
  bench_ReadTimes t;
  hid_t file = -1;
  t.open = Seconds([&] { file = H5Fopen(path.c_str(), H5F_ACC_RDONLY, H5P_DEFAULT); });
  t.mesh = Seconds([&] {
    const hid_t mesh = H5Gopen2(file, "mesh", H5P_DEFAULT);
    Get(mesh, "node_labels", b.nodeLabels, std::size_t(m.nodes));
    Get(mesh, "coordinates", b.coordinates, 3 * std::size_t(m.nodes));
    Get(mesh, "element_labels", b.elementLabels, std::size_t(m.elements));
    Get(mesh, "connectivity", b.connectivity, 8 * std::size_t(m.elements));
    H5Gclose(mesh);
  });
  t.results = Seconds([&] {
    for (int i = 0; i < m.frames; ++i) {
      const hid_t frame = H5Gopen2(file, ("frames/" + std::to_string(i)).c_str(), H5P_DEFAULT);
      Get(frame, "U_labels", b.uLabels, std::size_t(m.nodes));
      Get(frame, "U", b.u, 3 * std::size_t(m.nodes));
      Get(frame, "S_labels", b.sLabels, std::size_t(m.elements));
      Get(frame, "S", b.s, 48 * std::size_t(m.elements));
      H5Gclose(frame);
      b.Add(b.u.data(), b.u.size());
      b.Add(b.s.data(), b.s.size());
    }
  });
  t.close = Seconds([&] { H5Fclose(file); });
  return t;
}

double Open(const std::string& path) {
  return Best(20, [&] { H5Fclose(H5Fopen(path.c_str(), H5F_ACC_RDONLY, H5P_DEFAULT)); });
}

}  // namespace

const bench_System bench_Hdf5 = {"HDF5", Write, Read, Open};

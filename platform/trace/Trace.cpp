#include "trace/Trace.h"

#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <mutex>

namespace Trace {

namespace {

struct Registry {
   std::mutex mutex;
   std::map<std::string, std::unique_ptr<Source>, std::less<>> sources;
   std::map<std::string, int, std::less<>> settings; // "*" applies to all
   Sink sink;
};

Registry & registry() {
   static Registry * r = [] {
      auto * reg = new Registry;
      return reg;
   }();
   return *r;
}

int settingFor(Registry const & r, std::string_view name) {
   if (auto it = r.settings.find(name); it != r.settings.end()) {
      return it->second;
   }
   if (auto it = r.settings.find("*"); it != r.settings.end()) {
      return it->second;
   }
   return 0;
}

void parseInto(Registry & r, std::string_view setting) {
   while (!setting.empty()) {
      auto comma = setting.find(',');
      std::string_view item = setting.substr(0, comma);
      setting = comma == std::string_view::npos ? std::string_view() : setting.substr(comma + 1);
      auto eq = item.find('=');
      if (eq == std::string_view::npos || eq == 0) {
         continue;
      }
      std::string levelText(item.substr(eq + 1));
      char * end = nullptr;
      long level = std::strtol(levelText.c_str(), &end, 10);
      if (levelText.empty() || *end != '\0') {
         continue;
      }
      r.settings[std::string(item.substr(0, eq))] = static_cast<int>(level);
   }
}

std::once_flag envOnce;

void readEnvironment(Registry & r) {
   std::call_once(envOnce, [&r] {
      if (char const * env = std::getenv("ZON_TRACE")) {
         parseInto(r, env);
      }
   });
}

} // namespace

void Source::write(int level, std::string_view text) const {
   Registry & r = registry();
   Sink sink;
   {
      std::lock_guard<std::mutex> lock(r.mutex);
      sink = r.sink;
   }
   if (sink) {
      sink(*this, level, text);
      return;
   }
   std::fprintf(stderr, "%s[%d]: %.*s\n", name_.c_str(), level, static_cast<int>(text.size()),
                text.data());
}

Source & source(std::string_view name) {
   Registry & r = registry();
   readEnvironment(r);
   std::lock_guard<std::mutex> lock(r.mutex);
   auto it = r.sources.find(name);
   if (it == r.sources.end()) {
      std::string n(name);
      int level = settingFor(r, n);
      it = r.sources.emplace(n, std::unique_ptr<Source>(new Source(n, level))).first;
   }
   return *it->second;
}

void configure(std::string_view setting) {
   Registry & r = registry();
   readEnvironment(r);
   std::lock_guard<std::mutex> lock(r.mutex);
   parseInto(r, setting);
   for (auto & [name, src] : r.sources) {
      src->levelIs(settingFor(r, name));
   }
}

void sinkIs(Sink sink) {
   Registry & r = registry();
   std::lock_guard<std::mutex> lock(r.mutex);
   r.sink = std::move(sink);
}

} // namespace Trace

#include "loaded_net.h"

#include "reader/parser.h"

LoadedNet::LoadedNet(const std::string& source, const LoadOptions& options)
    : net(std::make_unique<NormNet>(&table, options)) {
  EXPECT_EQ(QvParseText(net.get(), &table, source), 0) << source;
}

Exp* LoadedNet::final(const char* name) {
  return net->final_exp(table.find("%s", name));
}

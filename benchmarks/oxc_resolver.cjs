// What a resolver that is given the folder takes for a name, warm: the median of passes over 1,000 names, in
// microseconds. Usage: oxc_resolver.cjs MODULES ROOT EXPECTED
const fs = require("fs");
const path = require("path");
const { ResolverFactory } = require(path.join(process.argv[2], "oxc-resolver"));

const files = fs.readFileSync(process.argv[4], "utf8").split("\n").map((line) => line.split(" ")[1])
  .filter((file) => file && file.startsWith(process.argv[3]) && file.endsWith(".vk") && fs.existsSync(file))
  .slice(0, 1000);
const asked = files.map((file) => [path.dirname(file), "./" + path.basename(file, ".vk")]);
const resolver = new ResolverFactory({ extensions: [".vk"] });
const times = [];
for (let pass = 0; pass < 35; ++pass) {
  const begin = process.hrtime.bigint();
  asked.forEach(([folder, name], i) => {
    if (resolver.sync(folder, name).path !== files[i]) throw new Error("another answer for " + files[i]);
  });
  times.push(Number(process.hrtime.bigint() - begin) / 1000 / asked.length);
}
console.log(times.slice(4).sort((a, b) => a - b)[15]); // without the passes that fill its caches

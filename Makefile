# The front door: each target installs the packages that it needs and does not find (Debian 12),
# then calls CMake with a preset of CMakePresets.json.

JOBS ?= $(shell nproc)
PREFIX ?= /usr/local
FUZZ_SECONDS ?= 60

BUILD := build
need = scripts/install-packages
configure = cmake --preset
compile = cmake --build --parallel $(JOBS) --preset

.DEFAULT_GOAL := help
.PHONY: help deps build demo test bench asan fuzz docs check format coverage install clean

help: ## Show this list
	@echo "make TARGET [JOBS=$(JOBS)]"
	@sed -nE 's/^([a-z]+):.*## (.*)/  \1\t\2/p' Makefile | expand -t 14

deps: ## Install the packages for building, testing and checking
	$(need) build test asan check

build: ## Build the libraries and the trovan command
	$(need) build
	$(configure) user
	$(compile) user

demo: build ## Show the tables of samples/, and write them to out/ in other forms
	scripts/demo $(BUILD)/user/bin/trovan samples out

test: ## Build and run all tests
	$(need) build test
	$(configure) release
	$(compile) release
	ctest --preset release --parallel $(JOBS)

asan: ## Run all tests under the address, undefined-behaviour and leak sanitizers
	$(need) build test asan
	$(configure) asan
	$(compile) asan
	ctest --preset asan --parallel $(JOBS)

check: ## Check formatting and layers, and analyse the code
	$(need) build test check
	$(configure) release
	scripts/check-scripts
	scripts/check-format
	scripts/check-layering $(BUILD)/release
	JOBS=$(JOBS) scripts/check-tidy $(BUILD)/release

format: ## Format all C++ files
	$(need) check
	scripts/check-format --fix

bench: ## Build and run the benchmarks, beside their peers
	$(need) build bench peers
	$(configure) bench
	$(compile) bench
	bench/report $(BUILD)/bench

fuzz: ## Run each fuzzer for FUZZ_SECONDS (60) seconds
	$(need) build fuzz
	$(configure) fuzz
	$(compile) fuzz
	scripts/fuzz-each $(BUILD)/fuzz $(FUZZ_SECONDS)

coverage: ## Count the lines that the tests run, into build/coverage/report
	$(need) build test coverage
	$(configure) coverage
	$(compile) coverage
	ctest --preset coverage --parallel $(JOBS)
	mkdir -p $(BUILD)/coverage/report
	gcovr --root . --filter src/ --filter include/ --filter filters/ --filter tools/ \
	  --exclude-throw-branches --print-summary \
	  --html-details $(BUILD)/coverage/report/index.html $(BUILD)/coverage

docs: ## Write the API reference to build/docs
	$(need) build docs
	$(configure) user
	mkdir -p $(BUILD)/docs
	views=$$(echo $(BUILD)/user/headers/*) && \
	  (cat docs/Doxyfile && echo "INPUT += $$views" && echo "STRIP_FROM_PATH = $$views" && \
	   echo "STRIP_FROM_INC_PATH = $$views") | doxygen -

install: build ## Install under PREFIX (/usr/local)
	cmake --install $(BUILD)/user --prefix $(PREFIX)

clean: ## Remove what was built
	rm -rf $(BUILD) out
